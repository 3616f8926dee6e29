#pragma once

#include <SDL_events.h>

#include <optional>
#include <string>
#include <utility>

#include "platform/host/panel/display.h"
#include "platform/host/window/window_view.h"

namespace host {

/// Turns what SDL reports into what a person did to the panel. One pointer draws at a time: the mouse's left
/// button or one finger, whichever came first; the others are ignored until it lifts.
/// A place in the window as the panel's pixel, the nearest one beside the picture of the panel.
struct WindowPlace {
    Point at;
    bool onPanel;
};

class WindowInput {
public:
    /// `window` in points, the unit of the mouse; nothing where `event` means nothing to the panel.
    [[nodiscard]] std::optional<Input> translate(const SDL_Event& event, const WindowView& view, Size window);

    /// Pasted text is taken only while a text is being typed.
    void setTyping(bool on) {
        typing_ = on;
        composed_.clear();
    }

    [[nodiscard]] bool typing() const { return typing_; }

    /// What an input method was composing when it last told; forgets it.
    [[nodiscard]] std::string takeComposed() { return std::exchange(composed_, {}); }

private:
    enum class Pointer { None, Mouse, Finger };

    [[nodiscard]] std::optional<Input> button(const SDL_MouseButtonEvent& event, WindowPlace place);
    [[nodiscard]] std::optional<Input> finger(const SDL_TouchFingerEvent& event, WindowPlace place);
    [[nodiscard]] std::optional<Input> key(const SDL_Keysym& keysym) const;

    Pointer pointer_ = Pointer::None;
    SDL_TouchID touch_ = 0;
    SDL_FingerID finger_ = 0;
    bool typing_ = false;
    std::string composed_;
};

}  // namespace host
