#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "platform/host/screen/columns.h"
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

    [[nodiscard]] lumora::graphics::PointD start() const { return start_; }
    /// Where it heads; a length of 1.
    [[nodiscard]] lumora::graphics::PointD unit() const { return unit_; }
    /// Length of the chord in pixels.
    [[nodiscard]] double length() const { return length_; }

    /// The columns of a screen in which the row `y` lies within `radius` of the chord; none for one less than 0.
    [[nodiscard]] Columns cut(int y, double radius, int screenWidth) const;

    /// How far the curve strays from the chord.
    [[nodiscard]] double bow() const { return bow_; }

    /// Lowers `squared[x]`, the squared distance of the pixel (x, y), to that from this step, in these columns and up
    /// to `kBlock` - 1 more: as many pixels as the machine handles in one go.
    static constexpr int kBlock = 4;
    void approach(float* squared, Columns columns, int y) const;

private:
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
    static constexpr std::size_t kMostSteps = 100;

    /// `resolution` is the largest number of steps.
    StrokePath(const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y, int resolution);

    /// Empty when the curve leaves the range of a thousand million pixels or is no number.
    [[nodiscard]] std::span<const StrokeStep> steps() const { return {steps_.data(), count_}; }

    /// A box around the path, without the stroke's width.
    [[nodiscard]] lumora::graphics::PointD topLeft() const { return topLeft_; }
    [[nodiscard]] lumora::graphics::PointD bottomRight() const { return bottomRight_; }

private:
    void include(lumora::graphics::PointD point, double margin);

    std::array<StrokeStep, kMostSteps> steps_;
    std::size_t count_ = 0;
    lumora::graphics::PointD topLeft_;
    lumora::graphics::PointD bottomRight_;
};

}  // namespace host
