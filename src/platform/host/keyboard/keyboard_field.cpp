#include "platform/host/keyboard/keyboard_field.h"

#include <algorithm>

namespace host {

namespace {

constexpr int kTextSize = 24;    // device-independent units, 160 to the inch
constexpr int kMargin = 5;       // design units, from the frame to the clip and from there to the text
constexpr int kCursorWidth = 4;  // design units
constexpr int kCorner = 14;      // design units

}  // namespace

KeyboardField::KeyboardField(const Desk& desk, Rect box)
    : desk_(desk),
      box_(box),
      clip_(box.inset(desk.device.frameThickness(kThinLine) + desk.device.designToPixel(kMargin))),
      inside_(clip_.inset(desk.device.designToPixel(kMargin))),
      block_(nullptr) {}

void KeyboardField::set(const std::string& text, std::size_t cursor, bool fromRight) {
    block_ = desk_.text.layOut(text, {desk_.text.defaultFamily(0), kTextSize}, inside_.w);
    lines_ = block_.lines();
    empty_ = text.empty();
    cursor_ = cursor;
    fromRight_ = fromRight;
    scrollToCursor();
    if (stepped_ == cursor) return;
    column_ = block_.cursor(cursor, fromRight).x;
    stepped_.reset();
}

void KeyboardField::paint() {
    desk_.screen.fill(box_, kWhite);
    desk_.screen.frame({.box = box_,
                        .thickness = desk_.device.frameThickness(kThinLine),
                        .radius = desk_.device.designToPixel(kCorner)});
    // No line is cut, but the one that is larger than the field.
    std::size_t end = first_ + 1;
    while (end < lines_.size() && fit(first_, end)) ++end;
    block_.draw(desk_.screen, origin(), clip_, kBlack, {first_, end});
    desk_.screen.fill(cursorBar(), kBlack);
}

std::size_t KeyboardField::offsetAt(Point onScreen) const {
    return block_.offsetAt({onScreen.x - origin().x, onScreen.y - origin().y});
}

std::size_t KeyboardField::lineBeside(bool down) {
    const std::size_t line = block_.lineOf(cursor_);
    if (down ? line + 1 >= lines_.size() : line == 0) return cursor_;
    const Rect& beside = lines_[down ? line + 1 : line - 1];
    stepped_ = block_.offsetAt({column_, beside.y + beside.h / 2});
    return *stepped_;
}

Point KeyboardField::origin() const { return {inside_.x, inside_.y - (lines_.empty() ? 0 : lines_[first_].y)}; }

/// On the screen. Where a full line ends at the field's edge the bar stays inside.
Rect KeyboardField::cursorBar() const {
    const Rect place = block_.cursor(cursor_, fromRight_);
    const int width = desk_.device.designToPixel(kCursorWidth);
    const int last = std::max(inside_.w - width, 0);
    const int x = empty_ && fromRight_ ? last : std::clamp(place.x, 0, last);
    return Rect{inside_.x + x, origin().y + place.y, width, place.h}.intersected(inside_);
}

/// True when these lines have room at once; neither is before the other's end.
bool KeyboardField::fit(std::size_t first, std::size_t last) const {
    return lines_[last].bottom() - lines_[first].y <= inside_.h;
}

/// The text moves by whole lines, so the first one in sight is never cut; no rows stay empty below while lines are
/// hidden above.
void KeyboardField::scrollToCursor() {
    if (lines_.empty()) return;
    const std::size_t line = block_.lineOf(cursor_);
    first_ = std::min(first_, line);
    while (first_ < line && !fit(first_, line)) ++first_;
    while (first_ > 0 && fit(first_ - 1, lines_.size() - 1)) --first_;
}

}  // namespace host
