#include "platform/host/screen/bitmap_record.h"

#include <limits>

namespace host {

BitmapPtr makeBitmap(int width, int height, int depth) {
    constexpr int kLargest = std::numeric_limits<std::uint16_t>::max();
    if (width < 1 || height < 1 || width > kLargest || height > kLargest) return nullptr;
    const int scanline = (width * depth + 7) / 8;
    if (scanline > kLargest) return nullptr;
    const std::size_t bytes = static_cast<std::size_t>(scanline) * static_cast<std::size_t>(height);
    auto* record = static_cast<bitmap_s*>(std::malloc(sizeof(bitmap_s) + bytes));
    if (record == nullptr) return nullptr;
    *record = {static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), static_cast<std::uint16_t>(depth),
               static_cast<std::uint16_t>(scanline)};
    return BitmapPtr(record);
}

}  // namespace host
