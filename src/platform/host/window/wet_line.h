#pragma once

#include <optional>

#include "platform/host/panel/display.h"
#include "platform/host/screen/ink.h"

namespace host {

/// The wet ink of a display that paints from the panel's picture: a second picture, in which the line lies over the
/// panel's. Memory for it is taken with the first line.
class WetLine {
public:
    /// The line from now on; null: none. The picture over which it will lie is as large as `shown`.
    void follow(const WetInk* ink, const Framebuffer& shown);

    /// Where the line lies, in panel pixels; empty while there is none.
    [[nodiscard]] Rect area() const { return area_; }

    /// The panel's picture with the line over it, in and around `part`, which the line lies in.
    [[nodiscard]] const Framebuffer& over(const Framebuffer& shown, Rect part);

private:
    struct Layer {
        explicit Layer(const Framebuffer& shown) : picture(shown.size(), shown.format()), ink(shown.size()) {}
        Framebuffer picture;
        Ink ink;
    };

    WetInk ink_;
    Rect area_{};
    std::optional<Layer> layer_;
};

}  // namespace host
