#pragma once

#include <cstdint>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// A colour as the pixel of one format, ready to be laid down.
class Paint {
public:
    Paint(Rgb colour, PixelFormat format);

    /// True when all bytes of a pixel are the same.
    [[nodiscard]] bool uniform() const { return uniform_; }
    /// Makes `count` pixels of a row this colour.
    void fill(std::uint8_t* pixels, int count) const;
    /// Lays the colour over one pixel, 0 (nothing) to 255 (all) of it.
    void blend(std::uint8_t* pixel, int amount) const;
    /// The same for pixels of a row, each by its own amount.
    void blend(std::uint8_t* pixels, const std::uint8_t* amounts, int count) const;

private:
    std::uint8_t bytes_[3];
    int channels_;
    bool uniform_;
};

/// Fills the part of `area` that lies inside the buffer.
void fillArea(Framebuffer& buffer, Rect area, Rgb colour);

}  // namespace host
