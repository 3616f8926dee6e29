#include "platform/host/explorer/thumbnails.h"

#include <algorithm>
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
    BitmapPtr whole = readPicture(picture.file, Formats::All, error).bitmap;
    if (whole != nullptr) return shrunk(std::move(whole), room);
    std::fprintf(stderr, "colour: %s\n", error.c_str());
    return nullptr;
}

}  // namespace

void Thumbnails::load(std::span<const PictureEntry> pictures, Size room) {
    std::vector<Thumbnail> before = std::exchange(page_, {});
    for (const PictureEntry& picture : pictures) {
        const auto known = std::find_if(before.begin(), before.end(),
                                        [&](const Thumbnail& thumbnail) { return isUnchanged(thumbnail.of, picture); });
        page_.push_back({picture, known != before.end() ? std::move(known->small) : read(picture, room)});
    }
}

}  // namespace host
