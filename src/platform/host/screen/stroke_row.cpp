#include "platform/host/screen/stroke_row.h"

#include <algorithm>

namespace host {

StrokeRow::StrokeRow(int screenWidth)
    : screenWidth_(screenWidth), distances_(static_cast<std::size_t>(screenWidth + StrokeStep::kBlock)) {}

void StrokeRow::measure(int y, std::span<const StepStrip* const> strips, const Nib& nib) {
    cut(y, strips);
    if (columns_.empty()) return;
    const auto nothing = static_cast<float>(nib.outer * nib.outer);
    const Columns left{columns_.left, solid_.empty() ? columns_.right : solid_.left - 1};
    const Columns right{solid_.empty() ? columns_.right + 1 : solid_.right + 1, columns_.right};
    fill(left, nothing);
    fill(right, nothing);
    // The last block may reach beyond the rim; true distances do no harm there.
    for (const auto& [step, outer] : std::span(parts_).first(count_)) {
        step->approach(distances_.data(), outer.within(left), y);
        step->approach(distances_.data(), outer.within(right), y);
    }
}

void StrokeRow::cut(int y, std::span<const StepStrip* const> strips) {
    columns_ = {};
    solid_ = {};
    count_ = 0;
    for (const StepStrip* strip : strips) {
        const Columns outer = strip->outer(y, screenWidth_);
        if (outer.empty()) continue;
        const Columns inner = strip->inner(y, screenWidth_);
        parts_[count_++] = {&strip->step(), outer};
        columns_ = columns_.empty() ? outer : columns_.united(outer);
        if (!inner.empty()) addSolid(inner);
    }
}

void StrokeRow::addSolid(Columns inside) {
    if (solid_.empty()) {
        solid_ = inside;
    } else if (inside.left <= solid_.right + 1 && inside.right >= solid_.left - 1) {
        solid_ = solid_.united(inside);
    }
}

void StrokeRow::fill(Columns span, float distance) {
    for (int x = span.left; x <= span.right; ++x) distances_[static_cast<std::size_t>(x)] = distance;
}

}  // namespace host
