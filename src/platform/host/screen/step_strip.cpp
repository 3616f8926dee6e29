#include "platform/host/screen/step_strip.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

using lumora::graphics::PointD;

constexpr double kSpare = 0.5;  // pixels around a joint that both its steps measure, since neither is exact there

constexpr double kLevel = 1e-9;  // of a direction: a smaller part than this is none

/// The part of a direction as something to divide by.
double divisor(double part) { return std::abs(part) < kLevel ? kLevel : part; }

/// How far what lies within `reach` of the joint of two steps, and is nearest to it, can lie beyond their ends.
double beyondJoint(const StrokeStep& step, const StrokeStep* other, double reach) {
    if (other == nullptr) return reach;
    const PointD u = step.unit();
    const PointD v = other->unit();
    return u.x * v.x + u.y * v.y > 0 ? reach * std::abs(u.x * v.y - u.y * v.x) : reach;
}

}  // namespace

Slab::Slab(PointD start, PointD unit, double aside, double before, double ahead) : y_(start.y) {
    const double back = start.y - before * unit.y;
    const double front = start.y + ahead * unit.y;
    const double rise = aside * std::abs(unit.x);
    top_ = std::min(back, front) - rise;
    bottom_ = std::max(back, front) + rise;
    const double toSide = 1 / divisor(unit.y);
    const double toEnd = 1 / divisor(unit.x);
    lengthways_ = {start.x, unit.x * toSide, aside * std::abs(toSide)};
    crossways_ = {start.x + (ahead - before) / 2 * toEnd, -unit.y * toEnd, (ahead + before) / 2 * std::abs(toEnd)};
}

Columns Slab::cut(int y, int screenWidth) const {
    const double dy = y - y_;
    const double side = lengthways_.middle + dy * lengthways_.perRow;
    const double end = crossways_.middle + dy * crossways_.perRow;
    return columnsBetween(std::max(side - lengthways_.half, end - crossways_.half),
                          std::min(side + lengthways_.half, end + crossways_.half), screenWidth);
}

StepStrip::StepStrip(const StrokeStep& step, const StrokeStep* before, const StrokeStep* after, const Nib& nib)
    : step_(&step),
      round_(before == nullptr || after == nullptr),
      outerRadius_(nib.outer + step.bow()),
      innerRadius_(nib.inner - step.bow()) {
    const double back = beyondJoint(step, before, outerRadius_);
    const double ahead = beyondJoint(step, after, outerRadius_);
    outer_ = Slab(step.start(), step.unit(), outerRadius_, back + kSpare, step.length() + ahead + kSpare);
    if (round_ || innerRadius_ <= 0) return;
    // So far beyond the ends that nothing is left open between it and the next one, yet nowhere out of the round
    // inside.
    const double most = std::min(std::max(back, ahead), innerRadius_ / 2);
    const double aside = std::sqrt(innerRadius_ * innerRadius_ - most * most);
    inner_ = Slab(step.start(), step.unit(), aside, std::min(back, most), step.length() + std::min(ahead, most));
}

Columns StepStrip::outer(int y, int screenWidth) const {
    return round_ ? step_->cut(y, outerRadius_, screenWidth) : outer_.cut(y, screenWidth);
}

Columns StepStrip::inner(int y, int screenWidth) const {
    if (round_) return step_->cut(y, innerRadius_, screenWidth);
    return innerRadius_ > 0 ? inner_.cut(y, screenWidth) : Columns{};
}

}  // namespace host
