#pragma once

#include <cstdint>
#include <vector>

#include "platform/host/base/geometry.h"
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
    /// Which source pixels each scaled pixel covers in one direction, and how much each of them counts. All cover
    /// equally many; those at the end may count nothing, so that the inner loop is the same for every pixel.
    struct Axis {
        Axis(int from, int to);
        [[nodiscard]] const std::uint16_t* weightsOf(int pixel) const {
            return weights.data() + static_cast<std::size_t>(pixel) * static_cast<std::size_t>(taps);
        }
        int taps;
        std::vector<int> first;
        std::vector<std::uint16_t> weights;
    };

    void copy(const Framebuffer& picture, Rect area, PixelRows into) const;
    void scaleSpan(const Framebuffer& picture, int row, int column, int width, std::uint32_t* into);
    [[nodiscard]] bool isWhite(const Framebuffer& picture, int row, int firstColumn, int bytes) const;
    void sumRows(const Framebuffer& picture, int row, int firstColumn, int bytes);
    template <int kChannels>
    void sumColumns(int column, int width, std::uint32_t* into) const;

    bool same_;
    Axis columns_;
    Axis rows_;
    std::vector<std::uint16_t> sums_;  ///< a part of one scaled row, averaged downwards only
};

}  // namespace host
