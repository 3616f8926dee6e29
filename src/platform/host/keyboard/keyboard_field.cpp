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
      flow_(desk.text, {desk.text.defaultFamily(0), kTextSize}, inside_.w) {}

void KeyboardField::paint() {
    desk_.screen.fill(box_, kWhite);
    desk_.screen.frame({.box = box_,
                        .thickness = desk_.device.frameThickness(kThinLine),
                        .radius = desk_.device.designToPixel(kCorner)});
    paintPart(clip_);
}

Rect KeyboardField::show(const std::string& text, std::size_t cursor, bool fromRight) {
    const Rect part = set(text, cursor, fromRight);
    if (!part.empty()) paintPart(part);
    return part;
}

Rect KeyboardField::set(const std::string& text, std::size_t cursor, bool fromRight) {
    const Rect oldBar = cursorBar();
    flow_.set(text);
    cursor_ = cursor;
    fromRight_ = fromRight;
    scrollToCursor();
    if (stepped_ != cursor) column_ = flow_.cursor(cursor, fromRight).x;
    if (stepped_ != cursor) stepped_.reset();

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

std::size_t KeyboardField::lineBeside(int step) {
    const auto& lines = flow_.lines();
    const int number = flow_.lineOf(cursor_) + step;
    if (number < 0 || number >= static_cast<int>(lines.size())) return cursor_;
    const Rect& line = lines[static_cast<std::size_t>(number)].box;
    stepped_ = flow_.offsetAt({column_, line.y + line.h / 2});
    return *stepped_;
}

/// Those in sight: none is cut, but the one that is larger than the field.
LineSpan KeyboardField::wholeLines() const {
    const auto& lines = flow_.lines();
    const auto hidden = [this](const TextBlock::Line& line) { return line.box.y < scrolled_; };
    const auto fits = [this](const TextBlock::Line& line) { return line.box.bottom() <= scrolled_ + inside_.h; };
    const auto first = std::find_if_not(lines.begin(), lines.end(), hidden);
    const auto end = std::find_if_not(first, lines.end(), fits);
    const int number = static_cast<int>(first - lines.begin());
    return {number, std::max(static_cast<int>(end - lines.begin()), number + 1)};
}

std::vector<KeyboardField::ShownLine> KeyboardField::visibleLines() const {
    std::vector<ShownLine> visible;
    const auto& lines = flow_.lines();
    const LineSpan whole = wholeLines();
    for (int i = whole.first; i < std::min(whole.end, static_cast<int>(lines.size())); ++i) {
        const TextBlock::Line& line = lines[static_cast<std::size_t>(i)];
        Rect ink = line.ink.united({line.box.x, line.box.y, std::max(line.box.w, 1), line.box.h});
        ink.x += inside_.x;
        ink.y += inside_.y - scrolled_;
        visible.push_back({flow_.utf8().substr(line.start, line.length), ink});
    }
    return visible;
}

/// On the screen. Where a full line ends at the field's edge the bar stays inside.
Rect KeyboardField::cursorBar() const {
    const Rect place = flow_.cursor(cursor_, fromRight_);
    const int width = desk_.device.designToPixel(kCursorWidth);
    const int last = std::max(inside_.w - width, 0);
    const int x = flow_.utf8().empty() && fromRight_ ? last : std::clamp(place.x, 0, last);
    return Rect{inside_.x + x, inside_.y + place.y - scrolled_, width, place.h}.intersected(inside_);
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
    const Rect& bar = lines[static_cast<std::size_t>(flow_.lineOf(cursor_))].box;
    scrolled_ = std::min({scrolled_, firstTopFrom(lines.back().box.bottom() - inside_.h), bar.y});
    if (bar.bottom() > scrolled_ + inside_.h) scrolled_ = firstTopFrom(bar.bottom() - inside_.h);
}

void KeyboardField::paintPart(Rect part) {
    desk_.screen.fill(part, kWhite);
    flow_.draw(desk_.screen, {inside_.x, inside_.y - scrolled_}, wholeLines(), part.intersected(clip_), kBlack);
    desk_.screen.fill(cursorBar().intersected(part), kBlack);
}

}  // namespace host
