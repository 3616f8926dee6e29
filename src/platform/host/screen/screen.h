#pragma once

#include <cstdint>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/bitmap_record.h"
#include "platform/host/screen/damage.h"
#include "platform/host/screen/frame_painter.h"
#include "platform/host/screen/framebuffer.h"
#include "platform/host/screen/ink.h"
#include "platform/splines.h"

namespace host {

/// Antialiased shape of one colour: `size.w` × `size.h` bytes of coverage, rows `stride` bytes apart.
struct Coverage {
    const std::uint8_t* rows;
    int stride;
    Size size;
};

/// The screen buffer and everything that draws into it. Every call clips at all four sides and takes
/// coordinates and sizes of any value. Owned by the Toolkit.
class Screen {
public:
    Screen(Size size, PixelFormat format);

    [[nodiscard]] const Framebuffer& pixels() const { return buffer_; }
    /// Where it has been drawn since the panel last took note.
    [[nodiscard]] Damage& damage() { return damage_; }

    void clear();
    void fill(Rect area, Rgb colour);
    /// Both end points belong to the line.
    void line(Point from, Point to, Rgb colour);
    void pixel(Point at, Rgb colour);
    /// Depths 1, 4, 8, 24 and 32 (blended); a colour bitmap on a grey screen becomes its luminance.
    void draw(Point topLeft, const bitmap_s& bitmap);
    void frame(const Frame& frame);
    /// Lays the colour over the screen through a coverage mask, painting nothing outside `clip`.
    void tint(Point topLeft, const Coverage& coverage, Rect clip, Rgb colour);
    /// One piece of a stroke (see CubicSplines::drawXYSpline). Returns the smallest known rectangle around the
    /// pixels that may have changed.
    Rect ink(const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y, int resolution, Rgb colour,
             int width);
    /// A copy of `area`, in its full size; white where it lies outside the screen. Null when `area` is empty or
    /// does not fit a record.
    [[nodiscard]] BitmapPtr capture(Rect area) const;

private:
    /// Something other than ink has been drawn there.
    void changed(Rect area);

    Framebuffer buffer_;
    Damage damage_;
    Ink ink_;
};

}  // namespace host
