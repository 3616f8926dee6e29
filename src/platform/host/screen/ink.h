#pragma once

#include "platform/host/base/geometry.h"
#include "platform/host/screen/framebuffer.h"
#include "platform/host/screen/ink_memory.h"
#include "platform/host/screen/stroke_row.h"
#include "platform/splines.h"

namespace host {

/// Strokes, drawn piece by piece as if drawn at once. Remembers how much of each pixel the present ink already
/// covers and blends only what is missing. A pixel's middle lies at its integer coordinates; its coverage follows
/// from the distance to the curve, so pieces that meet or overlap leave no trace of it.
class Ink {
public:
    explicit Ink(Size size);

    /// Draws a piece of a stroke and returns the rectangle it may have changed. Another colour is another ink.
    /// Draws nothing when the width is not positive or the curve is nowhere near a screen.
    Rect draw(Framebuffer& buffer, const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y,
              int resolution, Rgb colour, int width);

    /// Forgets the ink inside `area`, where something else has been drawn. The cost follows the ink in it.
    void forget(Rect area) { memory_.forget(area); }

private:
    InkMemory memory_;
    StrokeRow row_;
    Rgb colour_ = kBlack;
};

}  // namespace host
