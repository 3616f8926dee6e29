#include "platform/host/screen/stroke_path.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

using lumora::graphics::CubicSpline;
using lumora::graphics::PointD;

constexpr double kFlatness = 0.01;  // pixels between the curve and its steps: less than 3 of 255 levels

double value(const CubicSpline& piece, double t) { return piece.a + t * (piece.b + t * (piece.c + t * piece.d)); }

/// Steps needed for a curve: a chord over h of a curve with second derivative m strays from it by m × h² / 8.
std::size_t stepsFor(const CubicSpline& x, const CubicSpline& y, std::size_t most) {
    const double bendAtStart = std::hypot(2 * x.c, 2 * y.c);
    const double bendAtEnd = std::hypot(2 * x.c + 6 * x.d * x.length, 2 * y.c + 6 * y.d * y.length);
    const double bend = std::max(bendAtStart, bendAtEnd);
    const double steps = std::ceil(x.length * std::sqrt(bend / (8 * kFlatness)));
    return static_cast<std::size_t>(std::clamp(steps, 1.0, static_cast<double>(most)));
}

bool finite(const CubicSpline& piece) {
    return std::isfinite(value(piece, piece.length)) && std::isfinite(piece.a) && piece.length >= 0;
}

}  // namespace

StrokeStep::StrokeStep(PointD from, PointD to)
    : start_(from),
      unit_{1, 0},
      length_(std::hypot(to.x - from.x, to.y - from.y)),
      top_(std::min(from.y, to.y)),
      bottom_(std::max(from.y, to.y)) {
    if (length_ > 0) unit_ = {(to.x - from.x) / length_, (to.y - from.y) / length_};
    perRow_ = unit_.y == 0 ? 0 : 1 / unit_.y;
}

StrokeStep::Extent StrokeStep::extent(double y, double radius) const {
    // The outermost disc on the row is the one whose rim touches the row where the step's own side does, or that
    // of an end where the side does not reach the row.
    const double side = radius * (unit_.y > 0 ? unit_.x : -unit_.x);
    const double dy = y - start_.y;
    double leftAlong = unit_.x > 0 ? 0 : length_;
    double rightAlong = length_ - leftAlong;
    if (perRow_ != 0) {
        leftAlong = clampAlong((dy - side) * perRow_);
        rightAlong = clampAlong((dy + side) * perRow_);
    }
    const double leftDy = dy - leftAlong * unit_.y;
    const double rightDy = dy - rightAlong * unit_.y;
    const double leftHalf = radius * radius - leftDy * leftDy;
    const double rightHalf = radius * radius - rightDy * rightDy;
    if (leftHalf < 0 || rightHalf < 0) return {1, 0};
    return {start_.x + leftAlong * unit_.x - std::sqrt(leftHalf),
            start_.x + rightAlong * unit_.x + std::sqrt(rightHalf)};
}

StrokePath::StrokePath(const CubicSpline& x, const CubicSpline& y, int resolution) {
    if (!finite(x) || !finite(y)) return;
    count_ = stepsFor(
        x, y, std::clamp<std::size_t>(resolution > 0 ? static_cast<std::size_t>(resolution) : 1, 1, kMostSteps));
    PointD from{x.a, y.a};
    topLeft_ = bottomRight_ = from;
    for (std::size_t i = 0; i < count_; ++i) {
        const double t = x.length * static_cast<double>(i + 1) / static_cast<double>(count_);
        const PointD to{value(x, t), value(y, t)};
        steps_[i] = StrokeStep(from, to);
        topLeft_ = {std::min(topLeft_.x, to.x), std::min(topLeft_.y, to.y)};
        bottomRight_ = {std::max(bottomRight_.x, to.x), std::max(bottomRight_.y, to.y)};
        from = to;
    }
}

}  // namespace host
