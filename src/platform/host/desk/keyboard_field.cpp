#include "platform/host/desk/keyboard_field.h"

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
      flow_(desk.text, {desk.text.defaultFamily(0), kTextSize}, inside_.w) {}

void KeyboardField::paint() {
    desk_.screen.fill(box_, kWhite);
    desk_.screen.frame({.box = box_,
                        .thickness = desk_.device.frameThickness(kThinLine),
                        .radius = desk_.device.designToPixel(kCorner)});
    paintPart(clip_);
}

Rect KeyboardField::show(const std::string& text, std::size_t cursor, bool emptyAtRight) {
    const Rect part = set(text, cursor, emptyAtRight);
    if (!part.empty()) paintPart(part);
    return part;
}

Rect KeyboardField::set(const std::string& text, std::size_t cursor, bool emptyAtRight) {
    const Rect oldBar = cursorBar();
    flow_.set(text);
    cursor_ = cursor;
    emptyAtRight_ = emptyAtRight;
    scrollToCursor();

    Rect changed = cursorBar() == oldBar ? Rect{} : oldBar.united(cursorBar());
    const std::vector<ShownLine> lines = visibleLines();
    for (std::size_t i = 0; i < std::max(lines.size(), shown_.size()); ++i) {
        const ShownLine before = i < shown_.size() ? shown_[i] : ShownLine{};
        const ShownLine now = i < lines.size() ? lines[i] : ShownLine{};
        if (now != before) changed = changed.united(before.ink).united(now.ink);
    }
    shown_ = lines;
    if (changed.empty()) return {};
    return Rect{clip_.x, changed.y, clip_.w, changed.h}.intersected(clip_);
}

std::size_t KeyboardField::offsetAt(Point onScreen) const {
    return flow_.offsetAt({onScreen.x - inside_.x, onScreen.y - inside_.y + scrolled_});
}

std::size_t KeyboardField::lineAbove() const {
    const Rect bar = flow_.cursor(cursor_);
    return bar.y <= 0 ? cursor_ : flow_.offsetAt({bar.x, bar.y - 1});
}

std::size_t KeyboardField::lineBelow() const {
    const Rect bar = flow_.cursor(cursor_);
    const auto& lines = flow_.lines();
    const bool last = lines.empty() || lines.back().box.y <= bar.y;
    return last ? cursor_ : flow_.offsetAt({bar.x, bar.y + bar.h});
}

std::vector<KeyboardField::ShownLine> KeyboardField::visibleLines() const {
    std::vector<ShownLine> visible;
    for (const TextBlock::Line& line : flow_.lines()) {
        Rect ink = line.ink.united({line.box.x, line.box.y, std::max(line.box.w, 1), line.box.h});
        ink.x += inside_.x;
        ink.y += inside_.y - scrolled_;
        if (!ink.intersected(textClip()).empty())
            visible.push_back({flow_.utf8().substr(line.start, line.length), ink});
    }
    return visible;
}

/// On the screen. Where a full line ends at the field's edge the bar stays inside.
Rect KeyboardField::cursorBar() const {
    const Rect place = flow_.cursor(cursor_);
    const int width = desk_.device.designToPixel(kCursorWidth);
    const int last = std::max(inside_.w - width, 0);
    const int x = flow_.utf8().empty() && emptyAtRight_ ? last : std::clamp(place.x, 0, last);
    return Rect{inside_.x + x, inside_.y + place.y - scrolled_, width, place.h}.intersected(inside_);
}

/// The tails of a line that has left at the top do not show above the first one in sight.
Rect KeyboardField::textClip() const {
    const int top = scrolled_ > 0 ? inside_.y : clip_.y;
    return {clip_.x, top, clip_.w, clip_.y + clip_.h - top};
}

/// The text moves by whole lines, so the first one in sight is never cut; no rows stay empty below while lines are
/// hidden above.
void KeyboardField::scrollToCursor() {
    const auto& lines = flow_.lines();
    if (lines.empty()) return;
    const auto firstTopFrom = [&lines](std::int64_t row) {
        const auto line =
            std::find_if(lines.begin(), lines.end(), [row](const auto& each) { return each.box.y >= row; });
        return line == lines.end() ? lines.back().box.y : line->box.y;
    };
    const Rect bar = flow_.cursor(cursor_);
    scrolled_ = std::min({scrolled_, firstTopFrom(lines.back().box.bottom() - inside_.h), bar.y});
    if (bar.bottom() > scrolled_ + inside_.h) scrolled_ = firstTopFrom(bar.bottom() - inside_.h);
}

void KeyboardField::paintPart(Rect part) {
    desk_.screen.fill(part, kWhite);
    flow_.draw(desk_.screen, {inside_.x, inside_.y - scrolled_}, part.intersected(textClip()), kBlack);
    desk_.screen.fill(cursorBar().intersected(part), kBlack);
}

}  // namespace host
