#include "platform/host/keyboard/keyboard.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/host/record/json.h"
#include "platform/host/touch/pointer_event.h"

namespace host {

namespace {

constexpr int kAtTop = 0x400;
constexpr int kTitleSize = 22;  // device-independent units, 160 to the inch

/// Physical keys that do what a key on the screen does.
constexpr std::pair<Key, KeyRole> kTwins[] = {{Key::Return, KeyRole::Ok},     {Key::ShiftReturn, KeyRole::Return},
                                              {Key::Escape, KeyRole::Cancel}, {Key::Backspace, KeyRole::Backspace},
                                              {Key::Left, KeyRole::Left},     {Key::Right, KeyRole::Right},
                                              {Key::Up, KeyRole::Up},         {Key::Down, KeyRole::Down}};

KeyboardEdge edgeOf(int flags) { return (flags & kAtTop) != 0 ? KeyboardEdge::Top : KeyboardEdge::Bottom; }

std::string_view contentOf(const char* buffer) { return buffer == nullptr ? "" : buffer; }

}  // namespace

Keyboard::Keyboard(const Desk& desk, const KeyboardRequest& request)
    : desk_(desk),
      request_(request),
      geometry_(desk.device, edgeOf(request.flags)),
      title_(desk.languages.translated(request.title)),
      text_(contentOf(request.buffer), static_cast<std::size_t>(std::max(request.maxBytes, 0))),
      field_(desk, geometry_.field),
      keys_(desk, geometry_) {
    field_.set(text_.text(), text_.cursor(), keys_.startsRight());
}

void Keyboard::paint() {
    desk_.screen.fill(geometry_.area, kWhite);
    desk_.screen.fill(geometry_.border, kBlack);
    const font_s font{desk_.text.defaultFamily(0), kTitleSize};
    desk_.text.draw(desk_.screen, geometry_.title, title_, font, {.wrap = Wrap::None});
    field_.paint();
    keys_.paint();
}

void Keyboard::pointer(int type, Point at) {
    pointAt(type, at);
    if (type == kPointerDown) repeated_ = false;
    const auto press = keys_.pointer(type, at);
    if (press && !repeated_) act(*press);
}

void Keyboard::repeat() {
    repeated_ = true;
    if (const auto press = keys_.held()) act(*press);
}

/// A tap in the field places the cursor where the finger is lifted.
void Keyboard::pointAt(int type, Point at) {
    if (type == kPointerDown) fieldPressed_ = field_.box().contains(at);
    if (type != kPointerUp || !fieldPressed_) return;
    fieldPressed_ = false;
    if (!field_.box().contains(at)) return;
    text_.moveTo(field_.offsetAt(at));
    showText();
}

void Keyboard::act(const KeyPress& press) {
    switch (press.role) {
        case KeyRole::Ok:
            return confirm();
        case KeyRole::Cancel:
            return cancel();
        case KeyRole::Character:
            text_.insert(press.text);
            break;
        case KeyRole::Return:
            text_.insert("\n");
            break;
        case KeyRole::Clear:
            text_.set("");
            break;
        case KeyRole::Backspace:
            text_.eraseBefore();
            break;
        case KeyRole::Left:
        case KeyRole::Right:
            text_.moveTo(field_.beside(press.role == KeyRole::Right));
            break;
        case KeyRole::Up:
        case KeyRole::Down:
            text_.moveTo(field_.lineBeside(press.role == KeyRole::Down));
            break;
        case KeyRole::Shift:
        case KeyRole::Page:
            return;
        case KeyRole::Language:
            break;  // an empty field may start at its other side
    }
    showText();
}

void Keyboard::key(Key key) {
    for (const auto& [physical, role] : kTwins)
        if (physical == key) return act({role, {}});
    if (key == Key::Delete) text_.eraseAfter();
    if (key == Key::Home) text_.moveToLineStart();
    if (key == Key::End) text_.moveToLineEnd();
    showText();
}

void Keyboard::text(std::string_view utf8) {
    text_.insert(utf8);
    showText();
}

bool Keyboard::type(std::string_view utf8) {
    text_.set(utf8);
    confirm();
    return true;
}

/// The buffer has not been touched: it holds the text as it was.
void Keyboard::cancel() { closeAndTell(); }

void Keyboard::confirm() {
    const std::string& text = text_.text();
    if (request_.buffer != nullptr) std::memcpy(request_.buffer, text.c_str(), text.size() + 1);
    closeAndTell();
}

void Keyboard::closeAndTell() {
    if (request_.callback == nullptr) return close(std::nullopt);
    close(Callback{"keyboard " + jsonQuoted(contentOf(request_.buffer)),
                   [callback = request_.callback, buffer = request_.buffer] { callback(buffer); }});
}

void Keyboard::showText() {
    field_.set(text_.text(), text_.cursor(), keys_.startsRight());
    field_.paint();
    desk_.panel.update(field_.box(), Waveform::Fast);
}

std::unique_ptr<Modal> makeKeyboard(const Desk& desk, const KeyboardRequest& request) {
    return std::make_unique<Keyboard>(desk, request);
}

}  // namespace host
