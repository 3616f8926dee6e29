#pragma once

#include "platform/host/panel/display.h"

namespace host {

/// What the pen has still to draw. The application's pieces end some points behind the pointer, since later points
/// shape them; the display fills the gap with wet ink. Knows where the pointer was since the last piece that the
/// application has drawn in this press. Owned by the Loop.
class Tip {
public:
    void press(Point at);
    void lift();

    /// The next sample of the press is about to be delivered.
    void move(Point at);

    /// The application has drawn a piece that ends there.
    void drawn(Point end, Rgb colour, int width);

    /// To be shown once a sample has been delivered. Null when that has drawn nothing: before the first piece, with
    /// other tools and beside the page.
    [[nodiscard]] const WetInk* ink();

private:
    bool pressed_ = false;
    bool begun_ = false;  ///< a piece has been drawn in this press
    bool drawn_ = false;  ///< and with the last sample
    WetInk ink_;
};

}  // namespace host
