#pragma once

#include <cstdint>
#include <vector>

#include "platform/host/geometry.h"
#include "platform/host/screen/framebuffer.h"
#include "platform/splines.h"

namespace host {

/// Strokes, drawn piece by piece as if drawn at once. Remembers how much of each pixel the present ink already
/// covers (one byte a pixel) and blends only what is missing.
class Ink {
public:
    explicit Ink(Size size);

    /// Draws a piece of a stroke and returns the rectangle it may have changed. Another colour is another ink.
    Rect draw(Framebuffer& buffer, const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y,
              int resolution, Rgb colour, int width);

    /// Forgets the ink inside `area`, where something else has been drawn.
    void forget(Rect area);

private:
    Size size_;
    std::vector<std::uint8_t> covered_;
    Rect touched_{};
    Rgb colour_ = kBlack;
};

}  // namespace host
