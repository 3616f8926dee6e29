#pragma once

#include <cstdint>

/// The toolkit's bitmap record: this header, then `height` rows of `scanline` bytes each, in one
/// allocation. Rows run from the top. `depth` is bits per pixel: 1, 4 and 8 are greys (0 black, all
/// ones white, the left pixel in the highest bits of its byte), 24 is R, G, B bytes, 32 is R, G, B, A
/// bytes with straight alpha.
struct bitmap_s {
    std::uint16_t width;
    std::uint16_t height;
    std::uint16_t depth;
    std::uint16_t scanline;
};

static_assert(sizeof(bitmap_s) == 8, "four 16-bit words, with the pixels right behind them");

/// First byte of the pixel data; row r starts r × scanline bytes further on.
inline std::uint8_t* bitmap_pixels(bitmap_s* bitmap) { return reinterpret_cast<std::uint8_t*>(bitmap + 1); }
inline const std::uint8_t* bitmap_pixels(const bitmap_s* bitmap) {
    return reinterpret_cast<const std::uint8_t*>(bitmap + 1);
}
