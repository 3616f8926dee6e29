#pragma once

#include <SDL_events.h>

#include <deque>
#include <optional>
#include <string>
#include <utility>

#include "platform/host/panel/drawing.h"
#include "platform/host/window/window_view.h"

namespace host {

/// A place in the window as the panel's pixel, the nearest one beside the picture of the panel.
struct WindowPlace {
    Point at;
    bool onPanel;
};

/// Turns what SDL reports into what a person did to the panel. One pointer draws at a time: a finger, or the mouse's
/// left button, which counts as a pen, since SDL reports a tablet's pen as a mouse.
class WindowInput {
public:
    /// `window` in points, the unit of the mouse.
    void take(const SDL_Event& event, const WindowView& view, Size window);

    /// What has come of it and has not been fetched yet, oldest first.
    [[nodiscard]] std::optional<Input> next();

    /// Pasted text is taken only while a text is being typed.
    void setTyping(bool on) {
        typing_ = on;
        composed_.clear();
    }

    [[nodiscard]] bool typing() const { return typing_; }

    /// What an input method was composing when it last told; forgets it.
    [[nodiscard]] std::string takeComposed() { return std::exchange(composed_, {}); }

private:
    void button(const SDL_MouseButtonEvent& event, WindowPlace place);
    void finger(const SDL_TouchFingerEvent& event, WindowPlace place);
    void draw(const PointerAct& act, WindowPlace place);
    [[nodiscard]] static std::optional<Input> key(const SDL_Keysym& keysym, bool typing);

    std::deque<Input> inputs_;
    Drawing drawing_{inputs_};
    bool typing_ = false;
    std::string composed_;
};

}  // namespace host
