#pragma once

#include <vector>

#include "platform/host/screen/stroke_path.h"

namespace host {

/// Columns `left` .. `right` of a row; none while `left` is the larger one.
struct Columns {
    int left = 0;
    int right = -1;

    [[nodiscard]] bool empty() const { return left > right; }
};

/// The columns of a screen `width` pixels wide whose middles lie between two places of any value.
[[nodiscard]] Columns columnsBetween(double left, double right, int width);

/// The distances from a stroke's curve between which coverage falls from all to nothing.
struct Nib {
    /// Half the width of the band: it is a box of 1/√2 pixel blurred by one of 1/√5. On lines at 45 degrees and at
    /// a slope of 1 in 2 all pixels lie at multiples of these distances; with any other band such lines come out
    /// bolder or thinner as they happen to lie between the pixels.
    static constexpr double kWideBox = 0.70711;
    static constexpr double kNarrowBox = 0.44721;
    static constexpr double kHalfBand = (kWideBox + kNarrowBox) / 2;

    explicit Nib(int width) : outer(width / 2.0 + kHalfBand), inner(width / 2.0 - kHalfBand) {}

    double outer;
    double inner;
};

/// Squared distances of one row's pixels to a path. A row cuts the inside of a step in one run of pixels, which
/// need no distances; only those of the rim are measured:
///
///     columns    |<------------------------->|
///     solid             |<--------->|
///     distances  d d d d             d d d d d
///
/// Of several runs that do not touch, one is `solid`; the others have distances of 0.
class StrokeRow {
public:
    explicit StrokeRow(int screenWidth);

    /// Starts row `y`, which no step has reached yet.
    void begin(int y);
    void approach(const StrokeStep& step, const Nib& nib);

    /// All pixels that the path may reach.
    [[nodiscard]] Columns columns() const { return columns_; }
    /// A run of them that lies wholly inside and has no distances.
    [[nodiscard]] Columns solid() const { return solid_; }
    [[nodiscard]] float squaredDistance(int x) const { return distances_[static_cast<std::size_t>(x)]; }

private:
    void extend(Columns span, float nothing);
    void measure(const StrokeStep& step, Columns span);
    void addSolid(Columns inside);
    void fill(Columns span, float distance);

    int screenWidth_;
    int y_ = 0;
    Columns columns_;
    Columns solid_;
    std::vector<float> distances_;
};

}  // namespace host
