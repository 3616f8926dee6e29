#include "platform/host/screen/blit.h"

#include <cstring>

#include "platform/host/screen/paint.h"

namespace host {

namespace {

/// Reads pixel x of a row of records of one depth.
template <int depth>
struct Pixel {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
    int alpha = 255;

    Pixel(const std::uint8_t* row, int x) {
        if constexpr (depth < 8) {
            constexpr int kPerByte = 8 / depth;
            constexpr int kLargest = (1 << depth) - 1;
            const int shift = (kPerByte - 1 - x % kPerByte) * depth;
            red = green = blue = static_cast<std::uint8_t>((row[x / kPerByte] >> shift & kLargest) * 255 / kLargest);
        } else if constexpr (depth == 8) {
            red = green = blue = row[x];
        } else {
            const std::uint8_t* bytes = row + static_cast<std::ptrdiff_t>(x) * (depth / 8);
            red = bytes[0];
            green = bytes[1];
            blue = bytes[2];
            if constexpr (depth == 32) alpha = bytes[3];
        }
    }
};

/// Draws `count` pixels of a bitmap's row from pixel `first` on.
using DrawRow = void (*)(std::uint8_t* target, const std::uint8_t* row, int first, int count);

template <int depth, int channels>
void blendRow(std::uint8_t* target, const std::uint8_t* row, int first, int count) {
    for (int i = 0; i < count; ++i, target += channels) {
        const Pixel<depth> pixel(row, first + i);
        if constexpr (channels == 1) {
            *target = blend(*target, luminance({pixel.red, pixel.green, pixel.blue}), pixel.alpha);
        } else {
            target[0] = blend(target[0], pixel.red, pixel.alpha);
            target[1] = blend(target[1], pixel.green, pixel.alpha);
            target[2] = blend(target[2], pixel.blue, pixel.alpha);
        }
    }
}

template <int bytes>
void copyRow(std::uint8_t* target, const std::uint8_t* row, int first, int count) {
    std::memcpy(target, row + static_cast<std::ptrdiff_t>(first) * bytes, static_cast<std::size_t>(count) * bytes);
}

DrawRow drawRow(int depth, PixelFormat format) {
    const bool grey = format == PixelFormat::Grey8;
    switch (depth) {
        case 1:
            return grey ? blendRow<1, 1> : blendRow<1, 3>;
        case 4:
            return grey ? blendRow<4, 1> : blendRow<4, 3>;
        case 8:
            return grey ? copyRow<1> : blendRow<8, 3>;
        case 24:
            return grey ? blendRow<24, 1> : copyRow<3>;
        case 32:
            return grey ? blendRow<32, 1> : blendRow<32, 3>;
        default:
            return nullptr;
    }
}

std::size_t rowBytes(const Framebuffer& buffer, int width) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(buffer.bytesPerPixel());
}

/// From one page to the next most rows stay as they are. A row is looked at before it is copied, which costs no more
/// than the copy and spares the panel those rows.
void copyChangedRows(Framebuffer& buffer, const bitmap_s& bitmap, int top, Rect area, Damage& damage) {
    const std::size_t bytes = buffer.stride();
    for (int y = 0; y < area.h; ++y) {
        std::uint8_t* target = buffer.at(0, area.y + y);
        const std::uint8_t* row = bitmapRow(bitmap, top + y);
        if (std::memcmp(target, row, bytes) == 0) continue;
        std::memcpy(target, row, bytes);
        damage.add({area.x, area.y + y, area.w, 1});
    }
}

}  // namespace

bool drawable(const bitmap_s& bitmap) {
    return drawRow(bitmap.depth, PixelFormat::Grey8) != nullptr &&
           bitmap.scanline >= (bitmap.width * bitmap.depth + 7) / 8;
}

void drawBitmap(Framebuffer& buffer, Point topLeft, const bitmap_s& bitmap, Rect area, Damage& damage) {
    const int left = area.x - topLeft.x;
    const int top = area.y - topLeft.y;
    const bool wholeRows = area.w == buffer.size().w && area.w == bitmap.width && bitmap.scanline == buffer.stride();
    if (wholeRows && bitmap.depth == 8 * buffer.bytesPerPixel()) {
        copyChangedRows(buffer, bitmap, top, area, damage);
        return;
    }
    damage.add(area);
    const DrawRow draw = drawRow(bitmap.depth, buffer.format());
    for (int y = 0; y < area.h; ++y) draw(buffer.at(area.x, area.y + y), bitmapRow(bitmap, top + y), left, area.w);
}

BitmapPtr captureArea(const Framebuffer& buffer, Rect area) {
    BitmapPtr bitmap = makeBitmap(area.w, area.h, 8 * buffer.bytesPerPixel());
    if (!bitmap) return nullptr;
    const Rect inside = area.intersected(buffer.bounds());
    if (inside != area) std::memset(bitmap_pixels(bitmap.get()), 0xFF, pixelBytes(*bitmap));
    if (inside.empty()) return bitmap;
    const std::size_t indent = rowBytes(buffer, inside.x - area.x);
    for (int y = inside.y; y < inside.bottom(); ++y) {
        std::memcpy(bitmapRow(*bitmap, y - area.y) + indent, buffer.at(inside.x, y), rowBytes(buffer, inside.w));
    }
    return bitmap;
}

}  // namespace host
