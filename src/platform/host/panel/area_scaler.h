#pragma once

#include <cstdint>
#include <vector>

#include "platform/host/geometry.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// Rows of 0x00RRGGBB pixels that a picture is scaled into.
struct PixelRows {
    std::uint8_t* pixels;  ///< the pixel (0, 0), aligned for 32 bits
    std::size_t pitch;     ///< bytes from one row to the next
};

/// Scales rectangles of a picture so that each pixel becomes the mean of the area that it covers: thin lines grow
/// lighter but never break. The weights are worked out once; the cost of scaling follows the rectangle.
class AreaScaler {
public:
    /// Scales pictures of `from` to pictures of `to`, each at least 1 × 1.
    AreaScaler(Size from, Size to);

    /// Scales what the pixels `area` of the scaled picture cover of `picture` (whose size is `from`); the top left
    /// pixel of `area` goes to `into`'s first. `area` lies inside the scaled picture.
    void scale(const Framebuffer& picture, Rect area, PixelRows into);

private:
    /// The source pixels that one scaled pixel covers, in one direction, and how much each of them counts.
    struct Tap {
        int first;
        int count;
        std::size_t weights;  ///< where they begin in Axis::weights
    };
    struct Axis {
        Axis(int from, int to);
        std::vector<Tap> taps;
        std::vector<std::uint16_t> weights;  ///< those of a tap add up to kWhole
    };

    void copy(const Framebuffer& picture, Rect area, PixelRows into) const;
    void sumRows(const Framebuffer& picture, const Tap& rows, int firstByte, int bytes);
    void sumColumns(const Rect& area, int firstColumn, int channels, std::uint32_t* into) const;

    bool same_;
    Axis columns_;
    Axis rows_;
    std::vector<std::uint16_t> sums_;  ///< one row of the picture, averaged downwards
};

}  // namespace host
