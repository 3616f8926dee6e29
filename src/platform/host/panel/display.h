#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// A key of a physical keyboard that is no character of its own.
enum class Key { Return, ShiftReturn, Escape, Backspace, Delete, Left, Right, Up, Down, Home, End };

/// One thing a person did, in panel pixels.
struct Input {
    enum class Kind {
        PointerDown,
        PointerMove,
        PointerUp,
        Key,    ///< `key`
        Text,   ///< `text`: committed UTF-8, typed, from an input method or pasted
        Close,  ///< the person closed the display
        Lost,   ///< the display has gone; it shows nothing any more and every wait says so again
    };
    Kind kind = Kind::PointerMove;
    Point at{};
    Key key = Key::Return;
    std::string text{};
};

/// Ink that the pen has not drawn yet: its way since the end of the last piece that it has drawn in this press, in
/// panel pixels, and the look of that piece.
struct WetInk {
    std::vector<Point> path;  ///< at least the piece's end
    Rgb colour = kBlack;
    int width = 0;  ///< pixels
};

/// Where the panel is seen and touched. Displays differ in showing and in input, never in what is shown.
class Display {
public:
    Display() = default;
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    virtual ~Display() = default;

    /// Shows `area` of the panel's picture; `area` lies inside it. `shown` stays valid and is the same picture in
    /// every call, so a display may show older areas of it again when its window is uncovered.
    virtual void present(const Framebuffer& shown, Rect area) = 0;

    /// The next input; waits for it at most `timeout` (nothing: without end). No value when the time has passed or
    /// wake was called.
    virtual std::optional<Input> wait(std::optional<std::chrono::milliseconds> timeout) = 0;

    /// Ends the wait in progress, or the next one. Safe to call from another thread.
    virtual void wake() = 0;

    /// Shows at once what has been presented. A wait does so by itself; this is for those who are busy longer.
    virtual void flush() {}

    /// Shows a line along `ink` over the panel's picture, with the next flush, until this is called again; null: none.
    /// It is in no picture, and goes where it was over what is presented. Borrowed for the call.
    virtual void wetInk(const WetInk* ink) { static_cast<void>(ink); }

    /// Starts or ends text input from a physical keyboard; `near` is where the text appears (for an input
    /// method's own window).
    virtual void setTextInput(bool on, Rect near) {
        static_cast<void>(on);
        static_cast<void>(near);
    }

    /// The text that an input method is composing, which it has not committed; forgets it. Empty where none is known.
    virtual std::string takeComposed() { return {}; }
};

}  // namespace host
