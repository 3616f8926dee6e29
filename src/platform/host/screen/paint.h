#pragma once

#include <cstdint>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// The three bytes of a colour.
struct Tone {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;

    [[nodiscard]] bool grey() const { return red == green && green == blue; }
};

[[nodiscard]] constexpr Tone toneOf(Rgb colour) {
    return {static_cast<std::uint8_t>(colour >> 16 & 0xFF), static_cast<std::uint8_t>(colour >> 8 & 0xFF),
            static_cast<std::uint8_t>(colour & 0xFF)};
}

/// The grey that looks as bright as the colour: the weights of ITU-R BT.601 in 1/65536. A grey stays exactly
/// what it is.
[[nodiscard]] constexpr std::uint8_t luminance(Tone tone) {
    return static_cast<std::uint8_t>((19595 * tone.red + 38470 * tone.green + 7471 * tone.blue + 32768) >> 16);
}

/// `under` with `over` laid on it, 0 (nothing) to 255 (all) of it; rounded to the nearest.
[[nodiscard]] constexpr std::uint8_t blend(std::uint8_t under, std::uint8_t over, int amount) {
    const int sum = under * (255 - amount) + over * amount + 127;
    return static_cast<std::uint8_t>(sum / 255);
}

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
