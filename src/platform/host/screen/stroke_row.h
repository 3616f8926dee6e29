#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "platform/host/screen/step_strip.h"

namespace host {

/// Squared distances of one row's pixels to a path. A row cuts the inside of a step in one run of pixels, which
/// need no distances; only those of the rim are measured, where no other step's inside covers them:
///
///     columns    |<------------------------->|
///     solid             |<--------->|
///     distances  d d d d             d d d d d
///
/// Of several runs that do not touch, one is `solid`; the others are measured.
class StrokeRow {
public:
    explicit StrokeRow(int screenWidth);

    /// Row `y`, as far as these steps reach it.
    void measure(int y, std::span<const StepStrip* const> strips, const Nib& nib);

    /// All pixels that the path may reach.
    [[nodiscard]] Columns columns() const { return columns_; }
    /// A run of them that lies wholly inside and has no distances.
    [[nodiscard]] Columns solid() const { return solid_; }
    [[nodiscard]] float squaredDistance(int x) const { return distances_[static_cast<std::size_t>(x)]; }

private:
    /// A row's part of one step.
    struct Part {
        const StrokeStep* step;
        Columns outer;
    };

    void cut(int y, std::span<const StepStrip* const> strips);
    void addSolid(Columns inside);
    void fill(Columns span, float distance);

    int screenWidth_;
    Columns columns_;
    Columns solid_;
    std::array<Part, StrokePath::kMostSteps> parts_;
    std::size_t count_ = 0;
    std::vector<float> distances_;
};

}  // namespace host
