#include "platform/host/screen/stroke_path.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace host {

namespace {

using lumora::graphics::CubicSpline;
using lumora::graphics::PointD;

constexpr double kMostBow = 0.1;     // pixels that a step may rise over its chord
constexpr double kMostTurn = 0.2;    // radians that a step may turn, about: more is no parabola
constexpr double kFlatness = 0.005;  // pixels between the curve and its steps: little more than one of 255 levels

constexpr double kFarthest = 1e9;  // pixels; no pen comes from farther away

/// Pixels side by side, in one register.
using Block [[gnu::vector_size(StrokeStep::kBlock * sizeof(float))]] = float;
constexpr Block kZero{};
constexpr Block kSteps{0, 1, 2, 3};

double lengthOf(double x, double y) { return std::sqrt(x * x + y * y); }

double value(const CubicSpline& piece, double t) { return piece.a + t * (piece.b + t * (piece.c + t * piece.d)); }

/// Steps needed for a curve. A chord over h of a curve with second derivative m is m × h² / 8 away from it, and a
/// parabola through three points of a cubic strays from it by √3/36 × d × h³.
double stepsFor(const CubicSpline& x, const CubicSpline& y) {
    const double bendAtStart = lengthOf(2 * x.c, 2 * y.c);
    const double bendAtEnd = lengthOf(2 * x.c + 6 * x.d * x.length, 2 * y.c + 6 * y.d * y.length);
    const double bend = std::max(bendAtStart, bendAtEnd);
    const double forBow = x.length * std::sqrt(bend / (8 * kMostBow));
    const double forTurn = x.length * bend / kMostTurn;
    const double stray = 0.0481 * lengthOf(x.d, y.d) * x.length * x.length * x.length / kFlatness;
    return std::ceil(std::max({forBow, forTurn, stray > 1 ? std::cbrt(stray) : 1}));
}

/// False too for what is not a number. Nothing nearer overflows in what is computed from it.
bool withinReach(PointD p) { return std::abs(p.x) <= kFarthest && std::abs(p.y) <= kFarthest; }

}  // namespace

StrokeStep::StrokeStep(PointD from, PointD middle, PointD to)
    : start_(from), unit_{1, 0}, length_(lengthOf(to.x - from.x, to.y - from.y)), bow_(0), bend_(0) {
    if (length_ > 0) {
        unit_ = {(to.x - from.x) / length_, (to.y - from.y) / length_};
        // A turning point within the step is no parabola over its chord.
        const double rise =
            std::clamp((middle.y - from.y) * unit_.x - (middle.x - from.x) * unit_.y, -kMostBow, kMostBow);
        bow_ = std::abs(rise);
        bend_ = static_cast<float>(rise * 4 / (length_ * length_));
    }
    perRow_ = unit_.y == 0 ? 0 : 1 / unit_.y;
    unitX_ = static_cast<float>(unit_.x);
    unitY_ = static_cast<float>(unit_.y);
    half_ = static_cast<float>(length_ / 2);
}

Columns StrokeStep::cut(int y, double radius, int screenWidth) const {
    if (radius < 0) return {};
    // A disc moves along the chord. Centred at `along` it covers on this row what lies within √(radius² - q²) of its
    // centre, where q = dy - along × unit.y is the row's distance from that. It reaches out farthest where the rim
    // runs as the chord does, at q = ±radius × unit.x: there the row meets the straight side of what the disc sweeps.
    // Where that lies past an end of the chord, it is the disc of this end.
    const double side = radius * (unit_.y > 0 ? unit_.x : -unit_.x);
    const double dy = y - start_.y;
    double leftAlong = unit_.x > 0 ? 0 : length_;
    double rightAlong = length_ - leftAlong;
    if (perRow_ != 0) {
        leftAlong = std::clamp((dy - side) * perRow_, 0.0, length_);
        rightAlong = std::clamp((dy + side) * perRow_, 0.0, length_);
    }
    const double leftDy = dy - leftAlong * unit_.y;
    const double rightDy = dy - rightAlong * unit_.y;
    const double leftHalf = radius * radius - leftDy * leftDy;
    const double rightHalf = radius * radius - rightDy * rightDy;
    if (leftHalf < 0 || rightHalf < 0) return {};
    return columnsBetween(start_.x + leftAlong * unit_.x - std::sqrt(leftHalf),
                          start_.x + rightAlong * unit_.x + std::sqrt(rightHalf), screenWidth);
}

void StrokeStep::approach(float* squared, Columns columns, int y) const {
    const double dy = y - start_.y;
    for (int x = columns.left; x <= columns.right; x += kBlock) {
        const double dx = x - start_.x;
        const auto fromMiddle = static_cast<float>(dx * unit_.x + dy * unit_.y - length_ / 2);
        const auto across = static_cast<float>(dy * unit_.x - dx * unit_.y);
        const Block along = fromMiddle + kSteps * unitX_;
        const Block side = across - kSteps * unitY_;
        // The normals of a bend spread on its outside and close up on its inside, so the nearest point moves slower
        // or faster than the pixel. This is 1 / (1 + curvature × side) as long as that is near 1.
        const Block moved = 1 - 2 * bend_ * side;
        const Block closing = moved > 0.5F ? moved : kZero + 0.5F;
        const Block aside = along < 0 ? -along : along;
        const auto past = aside * closing > half_;
        const Block rise = bend_ * (half_ * half_ - along * along * closing);
        const Block sideways = side - (past ? kZero : rise);
        const Block lengthways = past ? aside - half_ : kZero;
        const Block distance = sideways * sideways + lengthways * lengthways;

        Block known;
        std::memcpy(&known, squared + x, sizeof(known));
        known = distance < known ? distance : known;
        std::memcpy(squared + x, &known, sizeof(known));
    }
}

StrokePath::StrokePath(const CubicSpline& x, const CubicSpline& y, int resolution)
    : topLeft_{x.a, y.a}, bottomRight_{x.a, y.a} {
    const double most = std::clamp<double>(resolution, 1, kMostSteps);
    const double wanted = stepsFor(x, y);
    const auto count = static_cast<std::size_t>(wanted < most ? std::max(wanted, 1.0) : most);
    const double half = x.length / static_cast<double>(2 * count);
    PointD from{x.a, y.a};
    if (!withinReach(from)) return;
    for (std::size_t i = 0; i < count; ++i) {
        const double t = half * static_cast<double>(2 * i + 1);
        const PointD middle{value(x, t), value(y, t)};
        const PointD to{value(x, t + half), value(y, t + half)};
        if (!withinReach(middle) || !withinReach(to)) return;
        steps_[i] = StrokeStep(from, middle, to);
        include(from, steps_[i].bow());
        include(to, steps_[i].bow());
        from = to;
    }
    count_ = count;
}

void StrokePath::include(PointD point, double margin) {
    topLeft_ = {std::min(topLeft_.x, point.x - margin), std::min(topLeft_.y, point.y - margin)};
    bottomRight_ = {std::max(bottomRight_.x, point.x + margin), std::max(bottomRight_.y, point.y + margin)};
}

}  // namespace host
