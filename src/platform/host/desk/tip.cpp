#include "platform/host/desk/tip.h"

#include <algorithm>

namespace host {

void Tip::press(Point at) {
    pressed_ = true;
    begun_ = false;
    drawn_ = false;
    ink_.path.assign(1, at);
}

void Tip::lift() {
    pressed_ = false;
    drawn_ = false;
}

void Tip::move(Point at) {
    // More than an application stays behind; what draws no pieces keeps no more.
    constexpr std::size_t kMostPoints = 16;
    if (ink_.path.size() == kMostPoints) ink_.path.erase(ink_.path.begin());
    ink_.path.push_back(at);
    drawn_ = false;
}

void Tip::drawn(Point end, Rgb colour, int width) {
    const auto reached = std::find(ink_.path.begin(), ink_.path.end(), end);
    if (!pressed_ || reached == ink_.path.end()) return;
    ink_.path.erase(ink_.path.begin(), reached);
    ink_.colour = colour;
    ink_.width = width;
    begun_ = drawn_ = true;
}

const WetInk* Tip::ink() {
    if (drawn_) return &ink_;
    // A sample beside the page is none of the stroke's.
    if (begun_ && pressed_) ink_.path.pop_back();
    return nullptr;
}

}  // namespace host
