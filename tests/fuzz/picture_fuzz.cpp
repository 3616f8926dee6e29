// A picture file of any bytes gives a picture, which is saved without loss, or one line that says why not.
#include <cstring>

#include "fuzz/fuzz.h"
#include "platform/host/files/picture_file.h"
#include "platform/host/screen/area_scaler.h"
#include "support/temporary_folder.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    // A packed BMP of a few bytes may hold 64 million pixels, and take seconds.
    if (size > 30 && bytes[0] == 'B' && bytes[30] != 0 && (bytes[19] > 1 || bytes[23] > 1)) return 0;
    static const TemporaryFolder folder;
    std::string error;
    const auto file = folder.write("any", FuzzInput(bytes, size).rest);
    host::BitmapPtr picture = host::readPicture(file, host::Formats::All, error).bitmap;
    assert((picture == nullptr) == !error.empty() && error.find('\n') == std::string::npos);
    if (picture == nullptr) return 0;
    if (picture->width < 8 && picture->height < 8) {
        const auto saved = folder / (size % 2 == 0 ? "saved.bmp" : "saved.png");
        assert(host::savePicture(saved, *picture, error, host::Sync::No));
        const host::BitmapPtr again = host::loadPicture(saved, error);
        assert(again != nullptr && std::memcmp(&*again, &*picture, sizeof(bitmap_s) + host::pixelBytes(*picture)) == 0);
    }
    const host::Size room{1 + static_cast<int>(size % 64), 1 + static_cast<int>(size / 64 % 64)};
    const host::BitmapPtr small = host::shrunk(std::move(picture), room);
    assert(small != nullptr && small->width <= room.w && small->height <= room.h);
    return 0;
}
