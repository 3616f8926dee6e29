#include "colour/blank_page.h"

#include <cstddef>

bool isBlank(const bitmap_s& bitmap) {
    constexpr std::uint8_t kWhiteByte = 0xFF;
    const std::size_t used = std::size_t{bitmap.width} * bitmap.depth / 8;
    const std::uint8_t* row = bitmap_pixels(&bitmap);
    for (int y = 0; y < bitmap.height; ++y, row += bitmap.scanline) {
        // No exit inside a row: the compiler turns this loop into wide registers.
        std::uint8_t common = kWhiteByte;
        for (std::size_t i = 0; i < used; ++i) common &= row[i];
        if (common != kWhiteByte) return false;
    }
    return true;
}
