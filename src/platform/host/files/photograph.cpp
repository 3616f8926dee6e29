#include "platform/host/files/photograph.h"

#include <SDL_image.h>
#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "platform/host/files/picture_header.h"
#include "platform/host/files/surface_record.h"
#include "platform/host/screen/surface.h"

namespace host {

namespace {

/// The last fault that the TIFF library told. By itself it prints it, and gives the part before it for the picture.
std::string tiffFault;

void hearTiffFault(const char* /*part*/, const char* format, va_list values) {
    std::array<char, 200> text{};
    static_cast<void>(std::vsnprintf(text.data(), text.size(), format, values));
    tiffFault = text.data();
}

/// The library's own choice of a decoder would take a file that has "<svg" in it for a drawing, of any size.
SDL_Surface* load(SDL_RWops* stream, std::string_view kind) {
    if (kind == "JPG") return IMG_LoadJPG_RW(stream);
    if (kind == "WEBP") return IMG_LoadWEBP_RW(stream);
    return kind == "GIF" ? IMG_LoadGIF_RW(stream) : IMG_LoadTIF_RW(stream);
}

SurfacePtr decode(std::span<const std::uint8_t> file, const char* kind, std::string& fault) {
    TIFFSetErrorHandler(hearTiffFault);
    TIFFSetWarningHandler(nullptr);
    tiffFault.clear();
    SDL_RWops* stream = SDL_RWFromConstMem(file.data(), static_cast<int>(file.size()));
    SurfacePtr surface(load(stream, kind));
    SDL_RWclose(stream);
    fault = !tiffFault.empty() ? tiffFault : surface == nullptr ? SDL_GetError() : "";
    return surface;
}

void mirror(bitmap_s& bitmap) {
    const std::size_t pixel = bitmap.depth / 8U;
    for (int y = 0; y < bitmap.height; ++y) {
        std::uint8_t* left = bitmapRow(bitmap, y);
        std::uint8_t* right = left + pixel * bitmap.width;
        for (; left < (right -= pixel); left += pixel) std::swap_ranges(left, left + pixel, right);
    }
}

/// Stands a stored picture upright: every second orientation is mirrored first, then it is turned.
BitmapPtr upright(BitmapPtr bitmap, unsigned orientation) {
    constexpr std::array kMirrored = {false, false, true, false, true, true, false, true, false};
    constexpr std::array kQuarterTurns = {0, 0, 0, 2, 2, 3, 1, 1, 3};
    if (bitmap == nullptr || orientation <= 1 || orientation >= kMirrored.size()) return bitmap;
    if (kMirrored[orientation]) mirror(*bitmap);
    return rotateBitmap(*bitmap, kQuarterTurns[orientation]);
}

}  // namespace

Picture loadPhotograph(std::span<const std::uint8_t> file, std::string& reason) {
    PictureHeader header;
    const char* known = file.empty() ? "has more bytes than a picture can have" : readPictureHeader(file, header);
    reason = known != nullptr ? known : "is no BMP, PNG, JPEG, WebP, GIF or TIFF picture";
    if (known != nullptr || header.kind == nullptr) return {};
    std::string fault;
    const SurfacePtr surface = decode(file, header.kind, fault);
    reason = "is damaged: " + fault;
    if (!fault.empty()) return {};
    reason = "is too large for a bitmap record";
    return {upright(recordFrom(*surface).bitmap, header.orientation), false};
}

}  // namespace host
