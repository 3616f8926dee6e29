#include "platform/host/window/window_view.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace host {

namespace {

// The largest size of the panel's shape inside `room`.
Size inscribed(Size panel, Size room) {
    const std::int64_t wide = std::int64_t{room.w} * panel.h;
    const std::int64_t high = std::int64_t{room.h} * panel.w;
    const auto part = [](std::int64_t product, int by) { return std::max(1, static_cast<int>(product / by)); };
    if (wide <= high) return {room.w, part(wide, panel.w)};
    return {part(high, panel.h), room.h};
}

struct Span {
    std::int64_t first;
    std::int64_t end;
};

// The pixels of a row of `shown` that show any of the pixels first .. end - 1 of a row of `whole`.
Span covering(Span of, int whole, int shown) {
    return {of.first * shown / whole, (of.end * shown + whole - 1) / whole};
}

int pixelAt(double place, int whole, int shown) {
    return static_cast<int>(std::clamp(std::floor(place * whole / shown), 0.0, whole - 1.0));
}

}  // namespace

WindowView::WindowView(Size panel, Size window) : panel_(panel), window_(window) {
    const Size size = inscribed(panel, window);
    picture_ = {(window.w - size.w) / 2, (window.h - size.h) / 2, size.w, size.h};
}

Rect WindowView::toWindow(Rect area) const {
    if (area.empty()) return {};
    const Span columns = covering({area.x, area.right()}, panel_.w, picture_.w);
    const Span rows = covering({area.y, area.bottom()}, panel_.h, picture_.h);
    return {picture_.x + static_cast<int>(columns.first), picture_.y + static_cast<int>(rows.first),
            static_cast<int>(columns.end - columns.first), static_cast<int>(rows.end - rows.first)};
}

Point WindowView::toPanel(double x, double y) const {
    return {pixelAt(x - picture_.x, panel_.w, picture_.w), pixelAt(y - picture_.y, panel_.h, picture_.h)};
}

Size WindowView::fit(Size panel, Size room) {
    if (panel.w <= room.w && panel.h <= room.h) return panel;
    return inscribed(panel, room);
}

}  // namespace host
