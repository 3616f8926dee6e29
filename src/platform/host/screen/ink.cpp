#include "platform/host/screen/ink.h"

#include <algorithm>
#include <cmath>

#include "platform/host/screen/stroke_path.h"
#include "platform/host/screen/tone.h"

namespace host {

namespace {

constexpr int kFull = 255;  // coverage of a pixel that lies wholly in the ink

/// The band in which coverage falls from all to nothing is one pixel wide and has the stroke's edge in its middle.
struct Nib {
    explicit Nib(int width) : outer(width / 2.0 + 0.5), inner(width / 2.0 - 0.5) {}

    [[nodiscard]] int coverage(float squaredDistance) const {
        if (squaredDistance <= inner * inner) return kFull;
        const double missing = outer - std::sqrt(static_cast<double>(squaredDistance));
        return missing <= 0 ? 0 : static_cast<int>(missing * kFull + 0.5);
    }

    double outer;
    double inner;
};

/// Columns `left` .. `right`; none while `left` is the larger one.
struct Columns {
    int left;
    int right;
};

/// The screen's columns between two places on a row, each of any value.
Columns columnsBetween(double left, double right, int width) {
    return {static_cast<int>(std::ceil(std::clamp(left, 0.0, static_cast<double>(width)))),
            static_cast<int>(std::floor(std::clamp(right, -1.0, width - 1.0)))};
}

/// Lowers the distances of one row to those from one step. The insides of a step are one run of pixels in every
/// row, so the two edges are followed inwards and what lies between needs no distance of its own.
class RowDistances {
public:
    RowDistances(std::vector<float>& distances, const Nib& nib, int y) : distances_(distances), nib_(nib), y_(y) {}

    void approach(const StrokeStep& step) {
        if (!step.reaches(y_, nib_.outer)) return;
        const StrokeStep::Extent extent = step.extent(y_, nib_.outer);
        const Columns span = columnsBetween(extent.left, extent.right, static_cast<int>(distances_.size()));
        if (span.left > span.right) return;
        include(span);
        int left = span.left;
        while (left <= span.right && lower(left, step)) ++left;
        if (left > span.right) return;
        int right = span.right;
        while (right > left && lower(right, step)) --right;
        fill({left, right}, 0);
    }

    [[nodiscard]] Columns columns() const { return columns_; }

private:
    /// False, with nothing changed, where the pixel lies wholly inside.
    bool lower(int x, const StrokeStep& step) {
        const double distance = step.squaredDistance(x, y_);
        if (distance <= nib_.inner * nib_.inner) return false;
        float& known = distances_[static_cast<std::size_t>(x)];
        known = std::min(known, static_cast<float>(distance));
        return true;
    }

    void include(Columns span) {
        const auto nothing = static_cast<float>(nib_.outer * nib_.outer);
        if (columns_.left > columns_.right) {
            fill(span, nothing);
            columns_ = span;
            return;
        }
        fill({span.left, columns_.left - 1}, nothing);
        fill({columns_.right + 1, span.right}, nothing);
        columns_ = {std::min(columns_.left, span.left), std::max(columns_.right, span.right)};
    }

    void fill(Columns span, float distance) {
        for (int x = span.left; x <= span.right; ++x) distances_[static_cast<std::size_t>(x)] = distance;
    }

    std::vector<float>& distances_;
    const Nib& nib_;
    int y_;
    Columns columns_{0, -1};
};

/// Raises a pixel's coverage to `wanted`. The pixel keeps its coverage too while the share is too small to show in
/// any channel; it is then given with the next one, instead of being lost to rounding again and again.
template <int channels>
void raise(std::uint8_t* pixel, const std::uint8_t* ink, std::uint8_t& covered, int wanted) {
    const float share = static_cast<float>(wanted - covered) / static_cast<float>(kFull - covered);
    bool shows = wanted == kFull;
    for (int channel = 0; channel < channels; ++channel) {
        const int before = pixel[channel];
        const auto after =
            static_cast<int>(static_cast<float>(before) + static_cast<float>(ink[channel] - before) * share + 0.5F);
        pixel[channel] = static_cast<std::uint8_t>(after);
        shows = shows || after != before;
    }
    if (shows) covered = static_cast<std::uint8_t>(wanted);
}

template <int channels>
void lay(std::uint8_t* pixels, std::uint8_t* covered, const float* distances, Columns span, const Nib& nib,
         const std::uint8_t* ink) {
    for (int x = span.left; x <= span.right; ++x) {
        if (covered[x] == kFull) continue;
        const int wanted = nib.coverage(distances[x]);
        if (wanted <= covered[x]) continue;
        raise<channels>(pixels + static_cast<std::ptrdiff_t>(x) * channels, ink, covered[x], wanted);
    }
}

/// The rows and columns of the screen that a stroke of that nib can reach.
Rect reach(const StrokePath& path, const Nib& nib, Size screen) {
    const Columns columns = columnsBetween(path.topLeft().x - nib.outer, path.bottomRight().x + nib.outer, screen.w);
    const Columns rows = columnsBetween(path.topLeft().y - nib.outer, path.bottomRight().y + nib.outer, screen.h);
    return Rect{columns.left, rows.left, columns.right - columns.left + 1, rows.right - rows.left + 1}.intersected(
        {0, 0, screen.w, screen.h});
}

}  // namespace

Ink::Ink(Size size) : memory_(size), distances_(static_cast<std::size_t>(size.w)) {}

Rect Ink::draw(Framebuffer& buffer, const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y,
               int resolution, Rgb colour, int width) {
    const StrokePath path(x, y, resolution);
    if (width <= 0 || !path.valid()) return {};
    if (colour != colour_) memory_.forget(buffer.bounds());
    colour_ = colour;

    const Nib nib(width);
    const Rect area = reach(path, nib, memory_.size());
    const bool grey = buffer.format() == PixelFormat::Grey8;
    const Tone tone = toneOf(colour);
    const std::uint8_t ink[] = {grey ? luminance(tone) : tone.red, tone.green, tone.blue};
    for (int row = area.y; row < area.bottom(); ++row) {
        RowDistances distances(distances_, nib, row);
        for (const StrokeStep& step : path.steps()) distances.approach(step);
        const Columns span = distances.columns();
        if (span.left > span.right) continue;
        std::uint8_t* covered = memory_.touchRow(row, span.left, span.right);
        if (grey) {
            lay<1>(buffer.at(0, row), covered, distances_.data(), span, nib, ink);
        } else {
            lay<3>(buffer.at(0, row), covered, distances_.data(), span, nib, ink);
        }
    }
    return area;
}

}  // namespace host
