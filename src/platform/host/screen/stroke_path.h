#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "platform/splines.h"

namespace host {

/// One straight step of a stroke: the points from its start along a unit vector, and those around them.
class StrokeStep {
public:
    StrokeStep() = default;
    StrokeStep(lumora::graphics::PointD from, lumora::graphics::PointD to);

    /// Ends of the step's part of a row; `left` is larger than `right` where the row misses it.
    struct Extent {
        double left;
        double right;
    };

    /// Where the row `y` lies within `radius` of the step.
    [[nodiscard]] Extent extent(double y, double radius) const;

    /// True where the row lies within `radius` of the step's rows.
    [[nodiscard]] bool reaches(double y, double radius) const { return y > top_ - radius && y < bottom_ + radius; }

    [[nodiscard]] double squaredDistance(double x, double y) const {
        const double dx = x - start_.x;
        const double dy = y - start_.y;
        const double along = clampAlong(dx * unit_.x + dy * unit_.y);
        const double restX = dx - along * unit_.x;
        const double restY = dy - along * unit_.y;
        return restX * restX + restY * restY;
    }

private:
    [[nodiscard]] double clampAlong(double along) const {
        const double low = along < 0 ? 0 : along;
        return low > length_ ? length_ : low;
    }

    // Left unset by the default constructor: a path holds room for many more steps than most pieces need.
    lumora::graphics::PointD start_;
    lumora::graphics::PointD unit_;
    double length_;
    double top_;
    double bottom_;
    double perRow_;  ///< length of the step from one row to the next, signed; 0 on a level step
};

/// A piece of a stroke as straight steps that stay within a hundredth of a pixel of its curve, as far as the
/// number of steps allows.
class StrokePath {
public:
    StrokePath(const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y, int resolution);

    /// False when a coefficient is not finite; there are no steps then.
    [[nodiscard]] bool valid() const { return count_ > 0; }
    [[nodiscard]] std::span<const StrokeStep> steps() const { return {steps_.data(), count_}; }

    /// The path's own box, without the stroke's width.
    [[nodiscard]] lumora::graphics::PointD topLeft() const { return topLeft_; }
    [[nodiscard]] lumora::graphics::PointD bottomRight() const { return bottomRight_; }

private:
    static constexpr std::size_t kMostSteps = 100;

    std::array<StrokeStep, kMostSteps> steps_;
    std::size_t count_ = 0;
    lumora::graphics::PointD topLeft_{};
    lumora::graphics::PointD bottomRight_{};
};

}  // namespace host
