#include "platform/host/window/window_input.h"

#include <SDL_clipboard.h>
#include <SDL_mouse.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace host {

namespace {

Input pointer(Input::Kind kind, Point at) { return {.kind = kind, .at = at}; }

Input text(const char* characters) { return {.kind = Input::Kind::Text, .text = characters}; }

WindowPlace placeOf(double x, double y, const WindowView& view) {
    const Point pixel{static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y))};
    return {view.toPanel(x, y), view.picture().contains(pixel)};
}

// A place that SDL gives in points, each of which may be several pixels: the point's middle counts.
WindowPlace placeOf(int x, int y, const WindowView& view, Size window) {
    return placeOf((x + 0.5) * view.window().w / window.w, (y + 0.5) * view.window().h / window.h, view);
}

WindowPlace placeOf(const SDL_TouchFingerEvent& finger, const WindowView& view) {
    const Size window = view.window();
    return placeOf(std::min(double{finger.x} * window.w, window.w - 0.5),
                   std::min(double{finger.y} * window.h, window.h - 0.5), view);
}

struct KeyCode {
    SDL_Keycode code;
    Key key;
};

constexpr KeyCode kKeys[] = {
    {SDLK_ESCAPE, Key::Escape}, {SDLK_BACKSPACE, Key::Backspace}, {SDLK_DELETE, Key::Delete},
    {SDLK_LEFT, Key::Left},     {SDLK_RIGHT, Key::Right},         {SDLK_UP, Key::Up},
    {SDLK_DOWN, Key::Down},     {SDLK_HOME, Key::Home},           {SDLK_END, Key::End},
};

bool pastes(const SDL_Keysym& keysym) {
    if (keysym.sym == SDLK_INSERT) return (keysym.mod & KMOD_SHIFT) != 0;
    // On keyboards without Latin letters the key in the place of V is meant.
    constexpr SDL_Keycode kLastLatin = 0x7F;
    const bool v = keysym.sym == SDLK_v || (keysym.sym > kLastLatin && keysym.scancode == SDL_SCANCODE_V);
    return v && (keysym.mod & KMOD_CTRL) != 0;
}

std::optional<Input> paste() {
    const std::unique_ptr<char, void (*)(void*)> clipboard(SDL_GetClipboardText(), SDL_free);
    if (!clipboard || *clipboard == '\0') return std::nullopt;
    return text(clipboard.get());
}

}  // namespace

std::optional<Input> WindowInput::translate(const SDL_Event& event, const WindowView& view, Size window) {
    switch (event.type) {
        case SDL_QUIT:
            return pointer(Input::Kind::Close, {});
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            return button(event.button, placeOf(event.button.x, event.button.y, view, window));
        case SDL_MOUSEMOTION:
            if (pointer_ != Pointer::Mouse) return std::nullopt;
            return pointer(Input::Kind::PointerMove, placeOf(event.motion.x, event.motion.y, view, window).at);
        case SDL_FINGERDOWN:
        case SDL_FINGERMOTION:
        case SDL_FINGERUP:
            return finger(event.tfinger, placeOf(event.tfinger, view));
        case SDL_KEYDOWN:
            return key(event.key.keysym);
        case SDL_TEXTEDITING:
            composed_ = event.edit.text;
            return std::nullopt;
        case SDL_TEXTEDITING_EXT:
            composed_ = event.editExt.text;
            SDL_free(event.editExt.text);
            return std::nullopt;
        case SDL_TEXTINPUT:
            composed_.clear();
            return text(event.text.text);
        default:
            return std::nullopt;
    }
}

std::optional<Input> WindowInput::button(const SDL_MouseButtonEvent& event, WindowPlace place) {
    if (event.button != SDL_BUTTON_LEFT) return std::nullopt;
    if (event.type == SDL_MOUSEBUTTONDOWN && pointer_ == Pointer::None && place.onPanel) {
        pointer_ = Pointer::Mouse;
        // A stroke that leaves the window goes on, and its end is not missed.
        SDL_CaptureMouse(SDL_TRUE);
        return pointer(Input::Kind::PointerDown, place.at);
    }
    if (event.type == SDL_MOUSEBUTTONUP && pointer_ == Pointer::Mouse) {
        pointer_ = Pointer::None;
        SDL_CaptureMouse(SDL_FALSE);
        return pointer(Input::Kind::PointerUp, place.at);
    }
    return std::nullopt;
}

std::optional<Input> WindowInput::finger(const SDL_TouchFingerEvent& event, WindowPlace place) {
    if (event.type == SDL_FINGERDOWN) {
        if (pointer_ != Pointer::None || !place.onPanel) return std::nullopt;
        pointer_ = Pointer::Finger;
        touch_ = event.touchId;
        finger_ = event.fingerId;
        return pointer(Input::Kind::PointerDown, place.at);
    }
    if (pointer_ != Pointer::Finger || event.touchId != touch_ || event.fingerId != finger_) return std::nullopt;
    if (event.type == SDL_FINGERMOTION) return pointer(Input::Kind::PointerMove, place.at);
    pointer_ = Pointer::None;
    return pointer(Input::Kind::PointerUp, place.at);
}

std::optional<Input> WindowInput::key(const SDL_Keysym& keysym) const {
    if (pastes(keysym)) return typing_ ? paste() : std::nullopt;
    const auto typed = [](Key key) { return Input{.kind = Input::Kind::Key, .key = key}; };
    if (keysym.sym == SDLK_RETURN || keysym.sym == SDLK_KP_ENTER)
        return typed((keysym.mod & KMOD_SHIFT) != 0 ? Key::ShiftReturn : Key::Return);
    const auto* known = std::find_if(std::begin(kKeys), std::end(kKeys),
                                     [&keysym](const KeyCode& each) { return each.code == keysym.sym; });
    if (known == std::end(kKeys)) return std::nullopt;
    return typed(known->key);
}

}  // namespace host
