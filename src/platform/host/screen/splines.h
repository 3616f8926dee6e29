#pragma once

#include <span>

#include "platform/splines.h"

namespace host {

/// See CubicSplines::calculateXYSplines. A repeated point gives a piece of length 0 that stays at the point. A run
/// of fewer than two points has no pieces. Allocates nothing.
void calculateSplines(std::span<const lumora::graphics::PointD> run, std::span<lumora::graphics::CubicSpline> x,
                      std::span<lumora::graphics::CubicSpline> y);

}  // namespace host
