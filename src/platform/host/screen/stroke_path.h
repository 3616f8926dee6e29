#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "platform/splines.h"

namespace host {

/// One slightly bent step of a stroke: a chord, and the parabola over it that rises by `bow` pixels in its middle.
///
///               middle
///             _.-"""-._             ^ side
///         _.-"    |    "-._         |
///     from --------+-------- to     +--> along
///         |<---- length ---->|
class StrokeStep {
public:
    /// Unset: a path holds room for many more steps than most pieces need.
    StrokeStep() = default;
    /// From one point of a curve to another, past the curve's own middle between them.
    StrokeStep(lumora::graphics::PointD from, lumora::graphics::PointD middle, lumora::graphics::PointD to);

    /// Ends of the step's part of a row; `left` is larger than `right` where the row misses it.
    struct Extent {
        double left;
        double right;
    };

    /// Where the row `y` lies within `radius` of the chord.
    [[nodiscard]] Extent extent(double y, double radius) const;

    /// How far the curve strays from the chord.
    [[nodiscard]] double bow() const { return bow_; }

    /// Lowers `squared[i]`, the squared distance of the pixel (x + i, y), to that from this step, for as many
    /// pixels as the machine handles in one go.
    static constexpr int kBlock = 4;
    void approach(float* squared, int x, int y) const;

private:
    [[nodiscard]] double clampAlong(double along) const {
        const double low = along < 0 ? 0 : along;
        return low > length_ ? length_ : low;
    }

    lumora::graphics::PointD start_;
    lumora::graphics::PointD unit_;
    double length_;
    double perRow_;  ///< length of the chord from one row to the next, signed; 0 on a level chord
    double bow_;
    // For the pixels of the rim. At `along` from its middle the step rises by bend × (half² - along²).
    float unitX_;
    float unitY_;
    float half_;  ///< half the length
    float bend_;  ///< half the curvature, 1 / pixels, signed
};

/// A piece of a stroke as bent steps, as few as follow its curve to about a hundredth of a pixel.
class StrokePath {
public:
    /// `resolution` is the largest number of steps.
    StrokePath(const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y, int resolution);

    /// Empty when the curve leaves the range of a thousand million pixels or is no number.
    [[nodiscard]] std::span<const StrokeStep> steps() const { return {steps_.data(), count_}; }

    /// A box around the path, without the stroke's width.
    [[nodiscard]] lumora::graphics::PointD topLeft() const { return topLeft_; }
    [[nodiscard]] lumora::graphics::PointD bottomRight() const { return bottomRight_; }

private:
    static constexpr std::size_t kMostSteps = 100;

    void include(lumora::graphics::PointD point, double margin);

    std::array<StrokeStep, kMostSteps> steps_;
    std::size_t count_ = 0;
    lumora::graphics::PointD topLeft_;
    lumora::graphics::PointD bottomRight_;
};

}  // namespace host
