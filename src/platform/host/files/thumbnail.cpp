#include "platform/host/files/thumbnail.h"

#include <algorithm>
#include <vector>

#include "platform/host/files/bmp_header.h"
#include "platform/host/files/bmp_rows.h"
#include "platform/host/files/input_file.h"
#include "platform/host/files/picture_file.h"
#include "platform/host/files/row_scaler.h"

namespace host {

namespace {

Size sizeOf(const bitmap_s& picture) { return {picture.width, picture.height}; }

bool fits(Size size, Size room) { return size.w <= room.w && size.h <= room.h; }

/// The largest size of that shape that fits, at least one pixel in each direction.
Size fitted(Size size, Size room) {
    const double factor = std::min(double{1} * room.w / size.w, double{1} * room.h / size.h);
    const auto scaled = [factor](int side, int most) {
        return std::clamp(static_cast<int>(side * factor + 0.5), 1, std::max(most, 1));
    };
    return {scaled(size.w, room.w), scaled(size.h, room.h)};
}

/// Shrinks a plain BMP while it is read.
BitmapPtr shrink(const PlainBmp& bmp, Size to, std::string& reason) {
    const int channels = bmp.depth() / 8;
    RowScaler scaler(bmp.size(), to, channels);
    std::vector<std::uint8_t> greys(bmp.depth() == 8 ? static_cast<std::size_t>(bmp.size().w) : 0);
    int firstRow = 0;
    int rowsTaken = 0;
    const bool whole = bmp.read([&](int y, const std::uint8_t* stored) {
        if (rowsTaken++ == 0) firstRow = y;
        // Colours keep their stored order until they are few.
        if (!greys.empty()) bmp.convert(stored, greys.data(), bmp.size().w);
        scaler.add(greys.empty() ? stored : greys.data());
    });
    BitmapPtr bitmap = makeBitmap(to.w, to.h, bmp.depth());
    if (!whole || bitmap == nullptr) {
        reason = "cannot be read to its end";
        return nullptr;
    }
    for (int y = 0; y < to.h; ++y) {
        const std::uint8_t* row = scaler.row(firstRow == 0 ? y : to.h - 1 - y);
        if (channels == 3) {
            swapRedAndBlue(row, bitmapRow(*bitmap, y), bitmap->width);
        } else {
            std::copy_n(row, to.w, bitmapRow(*bitmap, y));
        }
    }
    return bitmap;
}

BitmapPtr shrink(const bitmap_s& picture, Size to) {
    RowScaler scaler(sizeOf(picture), to, picture.depth / 8);
    for (int y = 0; y < picture.height; ++y) scaler.add(bitmapRow(picture, y));
    BitmapPtr bitmap = makeBitmap(to.w, to.h, picture.depth);
    for (int y = 0; bitmap != nullptr && y < to.h; ++y)
        std::copy_n(scaler.row(y), bitmap->scanline, bitmapRow(*bitmap, y));
    return bitmap;
}

}  // namespace

BitmapPtr loadThumbnail(const std::filesystem::path& path, Size room, std::string& error) {
    InputFile file;
    if (file.open(path, error)) {
        const auto header = readBmpHeader(file, error);
        const auto plain = header ? PlainBmp::open(file, *header) : std::nullopt;
        if (plain && !fits(plain->size(), room)) {
            BitmapPtr small = shrink(*plain, fitted(plain->size(), room), error);
            if (small == nullptr) error = printable(path) + ": " + error;
            return small;
        }
    }
    BitmapPtr picture = loadPicture(path, error);
    if (picture == nullptr || fits(sizeOf(*picture), room)) return picture;
    return shrink(*picture, fitted(sizeOf(*picture), room));
}

}  // namespace host
