#include "platform/host/window/wet_line.h"

#include <cmath>
#include <cstring>

namespace host {

namespace {

using lumora::graphics::CubicSpline;

/// Pixels that a window's pixel beside the line may show of the picture too, in the smallest window of a large panel.
constexpr int kAround = 10;

void copy(const Framebuffer& from, Rect area, Framebuffer& to) {
    const std::size_t bytes = static_cast<std::size_t>(area.w) * static_cast<std::size_t>(from.bytesPerPixel());
    for (int y = area.y; y < area.bottom(); ++y) std::memcpy(to.at(area.x, y), from.at(area.x, y), bytes);
}

}  // namespace

void WetLine::follow(const WetInk* ink, const Framebuffer& shown) {
    area_ = {};
    if (ink == nullptr || ink->path.size() < 2) return;
    ink_ = *ink;
    const int reach = ink->width / 2 + 2;
    for (const Point at : ink_.path) area_ = area_.united(Rect{at.x, at.y, 1, 1}.inset(-reach));
    area_ = area_.intersected(shown.bounds());
}

const Framebuffer& WetLine::over(const Framebuffer& shown, Rect part) {
    if (!layer_) layer_.emplace(shown);
    copy(shown, part.inset(-kAround).intersected(shown.bounds()), layer_->picture);
    for (std::size_t i = 1; i < ink_.path.size(); ++i) {
        const Point from = ink_.path[i - 1];
        const Point to = ink_.path[i];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        if (length == 0) continue;
        const CubicSpline x{double(from.x), (to.x - from.x) / length, 0, 0, length};
        const CubicSpline y{double(from.y), (to.y - from.y) / length, 0, 0, length};
        layer_->ink.draw(layer_->picture, x, y, 1, ink_.colour, ink_.width);
    }
    layer_->ink.forget(area_);
    return layer_->picture;
}

}  // namespace host
