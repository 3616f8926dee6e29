#include "platform/host/screen/stroke_row.h"

#include <algorithm>

namespace host {

Columns columnsBetween(double left, double right, int width) {
    const double first = std::clamp(left, 0.0, static_cast<double>(width));
    const double beyond = std::clamp(right + 1, 0.0, static_cast<double>(width));
    const auto whole = static_cast<int>(first);
    return {whole < first ? whole + 1 : whole, static_cast<int>(beyond) - 1};
}

StrokeRow::StrokeRow(int screenWidth)
    : screenWidth_(screenWidth), distances_(static_cast<std::size_t>(screenWidth + StrokeStep::kBlock)) {}

void StrokeRow::begin(int y) {
    y_ = y;
    columns_ = {};
    solid_ = {};
}

void StrokeRow::approach(const StrokeStep& step, const Nib& nib) {
    const StrokeStep::Extent reach = step.extent(y_, nib.outer + step.bow());
    const Columns span = columnsBetween(reach.left, reach.right, screenWidth_);
    if (span.empty()) return;
    const StrokeStep::Extent core = step.extent(y_, nib.inner - step.bow());
    const Columns inside = columnsBetween(core.left, core.right, screenWidth_);
    const Columns leftRim{span.left, inside.empty() ? span.right : inside.left - 1};
    const Columns rightRim{inside.empty() ? span.right + 1 : inside.right + 1, span.right};
    const auto nothing = static_cast<float>(nib.outer * nib.outer);
    if (columns_.empty()) {
        fill(leftRim, nothing);
        fill(rightRim, nothing);
        columns_ = span;
    } else {
        extend(span, nothing);
    }
    measure(step, leftRim);
    measure(step, rightRim);
    if (!inside.empty()) addSolid(inside);
}

void StrokeRow::extend(Columns span, float nothing) {
    fill({span.left, columns_.left - 1}, nothing);
    fill({columns_.right + 1, span.right}, nothing);
    columns_ = {std::min(columns_.left, span.left), std::max(columns_.right, span.right)};
}

/// The last block may reach beyond the span; true distances do no harm there.
void StrokeRow::measure(const StrokeStep& step, Columns span) {
    for (int x = span.left; x <= span.right; x += StrokeStep::kBlock) step.approach(distances_.data() + x, x, y_);
}

void StrokeRow::addSolid(Columns inside) {
    if (solid_.empty()) {
        solid_ = inside;
    } else if (inside.left <= solid_.right + 1 && inside.right >= solid_.left - 1) {
        solid_ = {std::min(solid_.left, inside.left), std::max(solid_.right, inside.right)};
    } else {
        fill(inside, 0);
    }
}

void StrokeRow::fill(Columns span, float distance) {
    for (int x = span.left; x <= span.right; ++x) distances_[static_cast<std::size_t>(x)] = distance;
}

}  // namespace host
