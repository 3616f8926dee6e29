#include "platform/host/screen/stroke_path.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

using lumora::graphics::CubicSpline;
using lumora::graphics::PointD;

constexpr double kMostBow = 0.1;     // pixels that a step may rise over its chord
constexpr double kFlatness = 0.005;  // pixels between the curve and its steps: little more than one of 255 levels

double value(const CubicSpline& piece, double t) { return piece.a + t * (piece.b + t * (piece.c + t * piece.d)); }

/// Steps needed for a curve. A chord over h of a curve with second derivative m is m × h² / 8 away from it, and a
/// parabola through three points of a cubic strays from it by √3/36 × d × h³.
double stepsFor(const CubicSpline& x, const CubicSpline& y) {
    const double bendAtStart = std::hypot(2 * x.c, 2 * y.c);
    const double bendAtEnd = std::hypot(2 * x.c + 6 * x.d * x.length, 2 * y.c + 6 * y.d * y.length);
    const double forBow = std::sqrt(std::max(bendAtStart, bendAtEnd) / (8 * kMostBow));
    const double forShape = std::cbrt(0.0481 * std::hypot(x.d, y.d) / kFlatness);
    return std::ceil(x.length * std::max(forBow, forShape));
}

bool finite(const CubicSpline& piece) { return std::isfinite(piece.a) && std::isfinite(value(piece, piece.length)); }

}  // namespace

StrokeStep::StrokeStep(PointD from, PointD middle, PointD to)
    : start_(from), unit_{1, 0}, length_(std::hypot(to.x - from.x, to.y - from.y)), bend_(0) {
    if (length_ > 0) {
        unit_ = {(to.x - from.x) / length_, (to.y - from.y) / length_};
        const double rise = (middle.y - from.y) * unit_.x - (middle.x - from.x) * unit_.y;
        // A turning point within the step is no parabola over its chord.
        bend_ = std::clamp(rise, -kMostBow, kMostBow) * 4 / (length_ * length_);
    }
    bow_ = std::abs(bend_) * length_ * length_ / 4;
    perRow_ = unit_.y == 0 ? 0 : 1 / unit_.y;
}

StrokeStep::Extent StrokeStep::extent(double y, double radius) const {
    if (radius < 0) return {1, 0};
    // The outermost disc on the row is the one whose rim touches the row where the chord's own side does, or that
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

void StrokeStep::approach(float* squared, int x, int y) const {
    // Places are rounded to floats only when they are relative to the step, so steps that come from far off the
    // screen stay exact on it.
    const double dx = x - start_.x;
    const double dy = y - start_.y;
    const double along = dx * unit_.x + dy * unit_.y;
    const auto fromStart = static_cast<float>(along);
    const auto fromEnd = static_cast<float>(along - length_);
    const auto across = static_cast<float>(dy * unit_.x - dx * unit_.y);
    const auto stepAlong = static_cast<float>(unit_.x);
    const auto stepAcross = static_cast<float>(-unit_.y);
    const auto bend = static_cast<float>(bend_);
    for (int i = 0; i < kBlock; ++i) {
        const auto steps = static_cast<float>(i);
        const float start = fromStart + steps * stepAlong;
        const float end = fromEnd + steps * stepAlong;
        const float side = across + steps * stepAcross;
        // Across the chord the distance is that to the parabola, which looks flatter from outside the bend and
        // rounder from inside; beyond its ends there is no rise.
        const float past = (start < 0 ? start : 0) + (end > 0 ? end : 0);
        const float rise = bend * (start > 0 ? start : 0) * (end < 0 ? -end : 0) * (1 - 2 * bend * side);
        const float distance = (side - rise) * (side - rise) + past * past;
        squared[i] = distance < squared[i] ? distance : squared[i];
    }
}

StrokePath::StrokePath(const CubicSpline& x, const CubicSpline& y, int resolution)
    : topLeft_{x.a, y.a}, bottomRight_{x.a, y.a} {
    if (!finite(x) || !finite(y)) return;
    const double most = std::clamp<double>(resolution, 1, kMostSteps);
    count_ = static_cast<std::size_t>(std::clamp(stepsFor(x, y), 1.0, most));
    const double half = x.length / static_cast<double>(2 * count_);
    PointD from{x.a, y.a};
    for (std::size_t i = 0; i < count_; ++i) {
        const double middle = half * static_cast<double>(2 * i + 1);
        const PointD to{value(x, middle + half), value(y, middle + half)};
        steps_[i] = StrokeStep(from, {value(x, middle), value(y, middle)}, to);
        include(from, steps_[i].bow());
        include(to, steps_[i].bow());
        from = to;
    }
}

void StrokePath::include(PointD point, double margin) {
    topLeft_ = {std::min(topLeft_.x, point.x - margin), std::min(topLeft_.y, point.y - margin)};
    bottomRight_ = {std::max(bottomRight_.x, point.x + margin), std::max(bottomRight_.y, point.y + margin)};
}

}  // namespace host
