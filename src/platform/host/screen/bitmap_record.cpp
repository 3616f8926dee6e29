#include "platform/host/screen/bitmap_record.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/host/screen/framebuffer.h"

namespace host {

namespace {

constexpr bool knownDepth(int depth) { return depth == 1 || depth == 4 || depth == 8 || depth == 24 || depth == 32; }

/// The place of the source pixel that comes to `target` in a picture of that size before it was turned.
Point turnedFrom(Point target, Size source, int quarterTurns) {
    switch (quarterTurns) {
        case 1:
            return {target.y, source.h - 1 - target.x};
        case 2:
            return {source.w - 1 - target.x, source.h - 1 - target.y};
        case 3:
            return {source.w - 1 - target.y, target.x};
        default:
            return target;
    }
}

/// Copies one pixel between rows; the target's row was cleared before.
void copyPixel(std::uint8_t* to, int toX, const std::uint8_t* from, int fromX, int depth) {
    if (depth >= 8) {
        const int bytes = depth / 8;
        std::memcpy(to + std::ptrdiff_t{toX} * bytes, from + std::ptrdiff_t{fromX} * bytes,
                    static_cast<std::size_t>(bytes));
        return;
    }
    const int perByte = 8 / depth;
    const auto shift = [&](int x) { return (perByte - 1 - x % perByte) * depth; };
    const int value = from[fromX / perByte] >> shift(fromX) & ((1 << depth) - 1);
    to[toX / perByte] = static_cast<std::uint8_t>(to[toX / perByte] | value << shift(toX));
}

}  // namespace

BitmapPtr makeBitmap(int width, int height, int depth) {
    constexpr int kLargest = std::numeric_limits<std::uint16_t>::max();
    if (width < 1 || height < 1 || width > kLargest || height > kLargest) return nullptr;
    const int scanline = (width * depth + 7) / 8;
    if (scanline > kLargest) return nullptr;
    const std::size_t bytes = static_cast<std::size_t>(scanline) * static_cast<std::size_t>(height);
    auto* record = static_cast<bitmap_s*>(std::malloc(sizeof(bitmap_s) + bytes));
    if (record == nullptr) return nullptr;
    preferHugePages(record, sizeof(bitmap_s) + bytes);
    *record = {static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), static_cast<std::uint16_t>(depth),
               static_cast<std::uint16_t>(scanline)};
    return BitmapPtr(record);
}

bool samePixels(const bitmap_s& left, const bitmap_s& right) {
    return std::memcmp(&left, &right, sizeof left) == 0 &&
           std::memcmp(bitmap_pixels(&left), bitmap_pixels(&right), pixelBytes(left)) == 0;
}

bool isWhite(const bitmap_s& bitmap) {
    const std::uint8_t* pixels = bitmap_pixels(&bitmap);
    return std::all_of(pixels, pixels + pixelBytes(bitmap), [](std::uint8_t byte) { return byte == 0xFF; });
}

BitmapPtr rotateBitmap(const bitmap_s& bitmap, int quarterTurns) {
    if (!knownDepth(bitmap.depth)) return nullptr;
    const int turns = quarterTurns & 3;
    const Size source{bitmap.width, bitmap.height};
    const Size size = turns % 2 == 0 ? source : Size{source.h, source.w};
    BitmapPtr turned = makeBitmap(size.w, size.h, bitmap.depth);
    if (!turned) return nullptr;
    std::memset(bitmap_pixels(turned.get()), 0, pixelBytes(*turned));
    for (int y = 0; y < size.h; ++y) {
        for (int x = 0; x < size.w; ++x) {
            const Point from = turnedFrom({x, y}, source, turns);
            copyPixel(bitmapRow(*turned, y), x, bitmapRow(bitmap, from.y), from.x, bitmap.depth);
        }
    }
    return turned;
}

}  // namespace host
