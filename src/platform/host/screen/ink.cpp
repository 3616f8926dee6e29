#include "platform/host/screen/ink.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "platform/host/screen/paint.h"
#include "platform/host/screen/step_sweep.h"
#include "platform/host/screen/stroke_path.h"

namespace host {

namespace {

constexpr int kFull = 255;  // coverage of a pixel that lies wholly in the ink

constexpr int kFraction = 22;  // bits behind the point: a share of a difference of 255 still fits an int

/// For each coverage, the share of one level in what is missing.
constexpr auto kShareOfLevel = [] {
    std::array<int, kFull + 1> shares{};
    for (int covered = 0; covered < kFull; ++covered) {
        shares[static_cast<std::size_t>(covered)] = (1 << kFraction) / (kFull - covered);
    }
    return shares;
}();

constexpr int kBandParts = 1024;

/// Coverage across the band, from its outer side in: that in the middle of each part.
///
///     255               __..-
///                    .-'
///                  .'
///       0    _..-''
///          outer       inner
constexpr auto kBand = [] {
    std::array<std::uint8_t, kBandParts> band{};
    for (int part = 0; part < kBandParts / 2; ++part) {
        // It rises as the narrow box enters the wide one, then steadily; the upper half mirrors the lower one.
        const double depth = (part + 0.5) * 2 * Nib::kHalfBand / kBandParts;
        const double entered = std::min(depth, Nib::kNarrowBox);
        const double share = (entered * entered / (2 * Nib::kNarrowBox) + depth - entered) / Nib::kWideBox;
        const int level = (static_cast<int>(2 * kFull * share) + 1) / 2;
        band[static_cast<std::size_t>(part)] = static_cast<std::uint8_t>(level);
        band[static_cast<std::size_t>(kBandParts - 1 - part)] = static_cast<std::uint8_t>(kFull - level);
    }
    return band;
}();

/// Lays one row of ink, `channels` bytes a pixel, where coverage is still missing.
template <int channels>
class RowBrush {
public:
    RowBrush(std::uint8_t* pixels, std::uint8_t* covered, const std::uint8_t* ink, const Nib& nib)
        : pixels_(pixels), covered_(covered), ink_(ink), outer_(static_cast<float>(nib.outer)) {}

    void lay(const StrokeRow& row) {
        const Columns all = row.columns();
        const Columns solid = row.solid();
        if (solid.empty()) {
            layRim(row, all);
            return;
        }
        layRim(row, {all.left, solid.left - 1});
        laySolid(solid);
        layRim(row, {solid.right + 1, all.right});
    }

private:
    void layRim(const StrokeRow& row, Columns span) {
        for (int x = span.left; x <= span.right; ++x) {
            constexpr auto kPartsPerPixel = static_cast<float>(kBandParts / (2 * Nib::kHalfBand));
            constexpr float kLastPart = kBandParts - 1;
            const float part = (outer_ - std::sqrt(row.squaredDistance(x))) * kPartsPerPixel;
            const int wanted = kBand[static_cast<std::size_t>(std::min(std::max(part, 0.0F), kLastPart))];
            if (wanted > covered_[x]) raise(x, wanted);
        }
    }

    /// Raises a pixel's coverage to `wanted`, so that it comes to what one touch of that coverage would have given:
    /// pixel += (ink - pixel) × (wanted - covered) / (255 - covered). A share that is too small to show in any channel
    /// is not noted as given; it comes with the next one, instead of being lost to rounding again and again.
    void raise(int x, int wanted) {
        const int share = (wanted - covered_[x]) * kShareOfLevel[covered_[x]];
        bool shows = wanted == kFull;
        std::uint8_t* pixel = pixels_ + static_cast<std::ptrdiff_t>(x) * channels;
        for (int channel = 0; channel < channels; ++channel) {
            const int change = ((ink_[channel] - pixel[channel]) * share + (1 << (kFraction - 1))) >> kFraction;
            pixel[channel] = static_cast<std::uint8_t>(pixel[channel] + change);
            shows = shows || change != 0;
        }
        covered_[x] = shows ? static_cast<std::uint8_t>(wanted) : covered_[x];
    }

    void laySolid(Columns span) {
        for (int x = span.left; x <= span.right; ++x) {
            std::memcpy(pixels_ + static_cast<std::ptrdiff_t>(x) * channels, ink_, channels);
        }
        std::memset(covered_ + span.left, kFull, static_cast<std::size_t>(span.right - span.left) + 1);
    }

    std::uint8_t* pixels_;
    std::uint8_t* covered_;
    const std::uint8_t* ink_;
    float outer_;
};

/// The rows and columns of the screen that a stroke of that nib can reach.
Rect areaOf(const StrokePath& path, const Nib& nib, Size screen) {
    const Columns columns = columnsBetween(path.topLeft().x - nib.outer, path.bottomRight().x + nib.outer, screen.w);
    const Columns rows = columnsBetween(path.topLeft().y - nib.outer, path.bottomRight().y + nib.outer, screen.h);
    if (columns.empty() || rows.empty()) return {};
    return {columns.left, rows.left, columns.right - columns.left + 1, rows.right - rows.left + 1};
}

}  // namespace

Ink::Ink(Size size) : memory_(size), row_(size.w) {}

Rect Ink::draw(Framebuffer& buffer, const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y,
               int resolution, Rgb colour, int width) {
    const StrokePath path(x, y, resolution);
    if (width <= 0 || path.steps().empty()) return {};
    if (colour != colour_) memory_.forget(buffer.bounds());
    colour_ = colour;

    const Nib nib(width);
    StepSweep sweep(path, nib);
    const Rect area = areaOf(path, nib, buffer.size());
    const bool grey = buffer.format() == PixelFormat::Grey8;
    const Tone tone = toneOf(colour);
    const std::uint8_t ink[] = {grey ? luminance(tone) : tone.red, tone.green, tone.blue};
    for (int y0 = area.y; y0 < area.bottom(); ++y0) {
        row_.measure(y0, sweep.reaching(y0), nib);
        const Columns reached = row_.columns();
        if (reached.empty()) continue;
        memory_.touch(y0, reached.left, reached.right);
        if (grey) {
            RowBrush<1>(buffer.at(0, y0), memory_.row(y0), ink, nib).lay(row_);
        } else {
            RowBrush<3>(buffer.at(0, y0), memory_.row(y0), ink, nib).lay(row_);
        }
    }
    return area;
}

}  // namespace host
