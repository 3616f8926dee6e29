#include "platform/host/browser/unsent_area.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

/// A client so slow that more gather gets the rectangle around all of them.
constexpr std::size_t kMostParts = 32;

void addIfAny(std::vector<Rect>& parts, Rect part) {
    if (!part.empty()) parts.push_back(part);
}

}  // namespace

void UnsentArea::add(Rect area) {
    std::vector<Rect> kept;
    for (const Rect& part : parts_) {
        const Rect both = part.intersected(area);
        if (both.empty()) {
            kept.push_back(part);
            continue;
        }
        const int below = both.y + both.h;
        const int beside = both.x + both.w;
        addIfAny(kept, {part.x, part.y, part.w, both.y - part.y});
        addIfAny(kept, {part.x, both.y, both.x - part.x, both.h});
        addIfAny(kept, {beside, both.y, part.x + part.w - beside, both.h});
        addIfAny(kept, {part.x, below, part.w, part.y + part.h - below});
    }
    addIfAny(kept, area);
    if (kept.size() > kMostParts) {
        Rect around{};
        for (const Rect& part : kept) around = around.united(part);
        kept = {around};
    }
    parts_ = std::move(kept);
}

Rect UnsentArea::takeBand(int mostPixels) {
    Rect& newest = parts_.back();
    Rect band = newest;
    band.h = std::min(band.h, std::max(1, mostPixels / band.w));
    newest.y += band.h;
    newest.h -= band.h;
    if (newest.empty()) parts_.pop_back();
    return band;
}

}  // namespace host
