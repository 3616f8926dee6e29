#include "platform/host/window/window_input.h"

#include <SDL_clipboard.h>
#include <SDL_mouse.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <memory>

namespace host {

namespace {

using Action = PointerAct::Action;

/// Tells the mouse from all fingers, whose ids grow from zero.
constexpr std::uint64_t kMouse = ~std::uint64_t{0};

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

void WindowInput::take(const SDL_Event& event, const WindowView& view, Size window) {
    switch (event.type) {
        case SDL_QUIT:
            inputs_.push_back({.kind = Input::Kind::Close});
            return;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            return button(event.button, placeOf(event.button.x, event.button.y, view, window));
        case SDL_MOUSEMOTION:
            if (event.motion.which == SDL_TOUCH_MOUSEID) return;
            return draw({Action::Move, PointerAct::Kind::Pen, kMouse},
                        placeOf(event.motion.x, event.motion.y, view, window));
        case SDL_FINGERDOWN:
        case SDL_FINGERMOTION:
        case SDL_FINGERUP:
            return finger(event.tfinger, placeOf(event.tfinger, view));
        case SDL_KEYDOWN:
            if (std::optional<Input> input = key(event.key.keysym, typing_)) inputs_.push_back(*std::move(input));
            return;
        case SDL_TEXTEDITING:
            composed_ = event.edit.text;
            return;
        case SDL_TEXTEDITING_EXT:
            composed_ = event.editExt.text;
            SDL_free(event.editExt.text);
            return;
        case SDL_TEXTINPUT:
            composed_.clear();
            inputs_.push_back(text(event.text.text));
            return;
        default:
            return;
    }
}

std::optional<Input> WindowInput::next() {
    if (inputs_.empty()) return std::nullopt;
    Input first = std::move(inputs_.front());
    inputs_.pop_front();
    return first;
}

void WindowInput::button(const SDL_MouseButtonEvent& event, WindowPlace place) {
    if (event.button != SDL_BUTTON_LEFT || event.which == SDL_TOUCH_MOUSEID) return;
    const bool down = event.type == SDL_MOUSEBUTTONDOWN;
    // A stroke that leaves the window goes on, and its end is not missed.
    SDL_CaptureMouse(down && place.onPanel ? SDL_TRUE : SDL_FALSE);
    draw({down ? Action::Down : Action::Up, PointerAct::Kind::Pen, kMouse}, place);
}

void WindowInput::finger(const SDL_TouchFingerEvent& event, WindowPlace place) {
    Action action = Action::Move;
    if (event.type == SDL_FINGERDOWN) action = Action::Down;
    if (event.type == SDL_FINGERUP) action = Action::Up;
    // Each touch screen counts its own fingers.
    const std::uint64_t id =
        static_cast<std::uint64_t>(event.touchId) << 32 ^ static_cast<std::uint64_t>(event.fingerId);
    draw({action, PointerAct::Kind::Finger, id}, place);
}

void WindowInput::draw(const PointerAct& act, WindowPlace place) {
    constexpr int kPerson = 1;  // there is one before a window
    if (act.action == Action::Down && !place.onPanel) return;
    drawing_.pointer(kPerson, act, {&place.at, 1}, std::chrono::steady_clock::now());
}

std::optional<Input> WindowInput::key(const SDL_Keysym& keysym, bool typing) {
    if (pastes(keysym)) return typing ? paste() : std::nullopt;
    const auto typed = [](Key key) { return Input{.kind = Input::Kind::Key, .key = key}; };
    if (keysym.sym == SDLK_RETURN || keysym.sym == SDLK_KP_ENTER)
        return typed((keysym.mod & KMOD_SHIFT) != 0 ? Key::ShiftReturn : Key::Return);
    const auto* known = std::find_if(std::begin(kKeys), std::end(kKeys),
                                     [&keysym](const KeyCode& each) { return each.code == keysym.sym; });
    if (known == std::end(kKeys)) return std::nullopt;
    return typed(known->key);
}

}  // namespace host
