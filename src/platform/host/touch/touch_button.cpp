#include "platform/host/touch/touch_button.h"

#include <algorithm>
#include <utility>

#include "platform/host/touch/pointer_event.h"

namespace host {

namespace {

constexpr int kCorner = 14;       // design units
constexpr int kLabelMargin = 6;   // design units, between frame and label
constexpr int kSmallestFont = 8;  // below this nobody reads it; the label is cut instead

/// A frame so thick that nothing is left inside.
Frame filled(Rect box, int radius) {
    return {
        .box = box, .thickness = (std::min(box.w, box.h) + 1) / 2, .corners = kAllCorners | kFilled, .radius = radius};
}

Point centred(Rect box, const bitmap_s& picture) {
    return {box.x + (box.w - picture.width) / 2, box.y + (box.h - picture.height) / 2};
}

}  // namespace

TouchButton::TouchButton(Rect box, ButtonFace face) : box_(box), face_(std::move(face)) {}

void TouchButton::setFace(std::string label, std::string icon) {
    if (label == face_.label && icon == face_.icon) return;
    face_.label = std::move(label);
    face_.icon = std::move(icon);
    fittedSize_ = 0;
}

void TouchButton::paint(const Desk& desk) {
    const int radius = desk.device.designToPixel(kCorner);
    const int line = marked_ ? 2 * desk.device.frameThickness(kThickLine) : desk.device.frameThickness(kThinLine);
    desk.screen.frame(pressed_ ? filled(box_, radius) : Frame{.box = box_, .thickness = line, .radius = radius});
    paintFace(desk, box_.inset(line));
}

void TouchButton::repaint(const Desk& desk) {
    desk.screen.fill(box_, kWhite);
    paint(desk);
}

bool TouchButton::pointer(const Desk& desk, int type, Point at) {
    const bool inside = box_.contains(at);
    if (type == kPointerDown) {
        if (inside != pressed_) show(desk, inside);
        return false;
    }
    if (!pressed_ || (inside && type != kPointerUp)) return false;
    show(desk, false);
    return inside;
}

void TouchButton::show(const Desk& desk, bool pressed) {
    pressed_ = pressed;
    repaint(desk);
    desk.panel.update(box_, Waveform::Fast);
}

void TouchButton::paintFace(const Desk& desk, Rect inside) {
    if (!face_.icon.empty()) {
        const auto picture = desk.theme.picture(pressed_ ? face_.icon + "_inv" : face_.icon);
        if (picture && picture->width <= inside.w && picture->height <= inside.h) {
            desk.screen.draw(centred(box_, *picture), *picture);
            return;
        }
    }
    if (face_.label.empty()) return;
    const int margin = desk.device.designToPixel(kLabelMargin);
    const Rect room{inside.x + margin, inside.y, inside.w - 2 * margin, inside.h};
    font_s font{face_.font.family, fittedSize_ > 0 ? fittedSize_ : face_.font.size};
    TextBlock label = desk.text.fitLine(face_.label, font, room.size(), kSmallestFont);
    fittedSize_ = font.size;
    label.drawInside(desk.screen, room, Align::Centre, pressed_ ? kWhite : kBlack);
}

void paintSheet(const Desk& desk, Rect area) {
    const int radius = desk.device.cornerRadius(kStandardCorner);
    const int solid = (std::min(area.w, area.h) + 1) / 2;
    desk.screen.frame(
        {.box = area, .thickness = solid, .corners = kAllCorners | kFilled, .radius = radius, .colour = kWhite});
    desk.screen.frame({.box = area, .thickness = desk.device.frameThickness(kThickLine), .radius = radius});
}

}  // namespace host
