#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "platform/bitmap.h"

namespace host {

struct FreeRecord {
    void operator()(bitmap_s* record) const { std::free(record); }
};

/// Owns a record that is released with `free`.
using BitmapPtr = std::unique_ptr<bitmap_s, FreeRecord>;

/// A record of that size with unset pixels and packed rows. Null when a side is not 1 .. 65,535, when a row
/// does not fit the record's 16-bit scanline, or when memory is short.
[[nodiscard]] BitmapPtr makeBitmap(int width, int height, int depth);

/// The picture turned clockwise by that many quarter turns, four of which are none; rows packed. Null when the
/// depth is unknown or the turned record cannot be made (see makeBitmap).
[[nodiscard]] BitmapPtr rotateBitmap(const bitmap_s& bitmap, int quarterTurns);

/// True when both have the same size, depth and pixels.
[[nodiscard]] bool samePixels(const bitmap_s& left, const bitmap_s& right);

/// True when every byte is 0xFF.
[[nodiscard]] bool isWhite(const bitmap_s& bitmap);

/// Bytes of the pixel data.
[[nodiscard]] inline std::size_t pixelBytes(const bitmap_s& bitmap) {
    return std::size_t{bitmap.scanline} * bitmap.height;
}

[[nodiscard]] inline std::uint8_t* bitmapRow(bitmap_s& bitmap, int y) {
    return bitmap_pixels(&bitmap) + static_cast<std::size_t>(y) * bitmap.scanline;
}
[[nodiscard]] inline const std::uint8_t* bitmapRow(const bitmap_s& bitmap, int y) {
    return bitmap_pixels(&bitmap) + static_cast<std::size_t>(y) * bitmap.scanline;
}

}  // namespace host
