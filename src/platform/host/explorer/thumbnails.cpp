#include "platform/host/explorer/thumbnails.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

#include "platform/host/files/picture_file.h"
#include "platform/host/screen/area_scaler.h"

namespace host {

namespace {

bool isUnchanged(const PictureEntry& before, const PictureEntry& now) {
    return before.file == now.file && before.changed == now.changed && before.bytes == now.bytes;
}

BitmapPtr read(const PictureEntry& picture, Size room) {
    std::string error;
    BitmapPtr whole = loadPicture(picture.file, error);
    if (whole != nullptr) return shrunk(std::move(whole), room);
    std::fprintf(stderr, "colour: %s\n", error.c_str());
    return nullptr;
}

}  // namespace

BitmapPtr shrunk(BitmapPtr picture, Size room) {
    const Size size{picture->width, picture->height};
    const double factor = std::min(1.0 * room.w / size.w, 1.0 * room.h / size.h);
    if (factor >= 1) return picture;
    const auto scaled = [factor](int side, int most) {
        return std::clamp(static_cast<int>(std::lround(side * factor)), 1, std::max(most, 1));
    };
    const Size to{scaled(size.w, room.w), scaled(size.h, room.h)};
    AreaScaler scaler(size, to);
    const PixelRows rows{bitmap_pixels(picture.get()), picture->scanline, picture->depth / 8};
    BitmapPtr small = makeBitmap(to.w, to.h, picture->depth);
    for (int y = 0; small != nullptr && y < to.h; ++y) scaler.scaleRow(rows, {0, y}, to.w, bitmapRow(*small, y));
    return small;
}

void Thumbnails::load(std::span<const PictureEntry> pictures, Size room) {
    std::vector<Thumbnail> before = std::exchange(page_, {});
    for (const PictureEntry& picture : pictures) {
        const auto known = std::find_if(before.begin(), before.end(),
                                        [&](const Thumbnail& thumbnail) { return isUnchanged(thumbnail.of, picture); });
        page_.push_back({picture, known != before.end() ? std::move(known->small) : read(picture, room)});
    }
}

}  // namespace host
