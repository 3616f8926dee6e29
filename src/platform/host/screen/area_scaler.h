#pragma once

#include <cstdint>
#include <vector>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

/// A picture of 1 (grey) or 3 bytes a pixel, borrowed.
struct PixelRows {
    const std::uint8_t* pixels;
    std::size_t stride;  ///< bytes from one row to the next
    int channels;
};

/// Scales parts of a picture so that each pixel becomes the mean of the area that it covers: thin lines grow lighter
/// but never break. The weights are worked out once; the cost of scaling follows the part.
class AreaScaler {
public:
    /// Scales pictures of `from` to pictures of `to`, each at least 1 × 1.
    AreaScaler(Size from, Size to);

    /// Writes `width` pixels of a row of the scaled picture, from the pixel `first` on, packed and of as many channels
    /// as the picture, whose size is `from`.
    void scaleRow(const PixelRows& picture, Point first, int width, std::uint8_t* into);

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

    void scaleSpan(const PixelRows& picture, Point first, int width, std::uint8_t* into);
    template <int kChannels>
    void sumColumns(int column, int width, std::uint8_t* into) const;

    Axis columns_;
    Axis rows_;
    std::vector<std::uint16_t> sums_;  ///< a part of one scaled row, averaged downwards only
};

/// The picture of depth 8 or 24, shrunk in its own shape until it fits into `room`; one that fits stays as it is. Null
/// when memory is short.
[[nodiscard]] BitmapPtr shrunk(BitmapPtr picture, Size room);

}  // namespace host
