#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/splines.h"

namespace host {

/// Farther than this, in x or in y, no point is moved: it stays inside its pixel, and rounds to it.
inline constexpr double kWithinPixel = 0.499;

/// True for a point in the middle of a pixel.
[[nodiscard]] bool isWholePixel(lumora::graphics::PointD point);

/// Where within its pixel the pen was at the whole-pixel point `index` of a run, as its neighbours tell: the parabola
/// or the cubic through their pixels that averages most of them. The point itself where there is none, as around a
/// corner, at both ends of the run and beside points that are no whole pixels. Depends on no more than five points
/// before it and two after it.
[[nodiscard]] lumora::graphics::PointD withinPixel(std::span<const lumora::graphics::PointD> run, std::size_t index);

/// Moves the whole-pixel points of runs to where the pen was within its pixels. Owned by the Toolkit, since nothing is
/// allocated while the pen moves.
class PixelFit {
public:
    /// The choice for a point is the same in all runs in which two points follow it and five come before it, or the
    /// press begins or ends: pieces from different runs meet. Other points stay. Valid until the next call.
    std::span<const lumora::graphics::PointD> place(std::span<const lumora::graphics::PointD> run);

private:
    std::vector<lumora::graphics::PointD> placed_;
};

}  // namespace host
