#include "platform/host/files/surface_picture.h"

#include <SDL_image.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace host {

namespace {

using GreyTable = std::array<std::uint8_t, 256>;

struct CloseStream {
    void operator()(SDL_RWops* stream) const { SDL_FreeRW(stream); }
};

constexpr std::uint8_t onWhite(unsigned value, unsigned alpha) {
    return static_cast<std::uint8_t>((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

const std::uint8_t* surfaceRow(const SDL_Surface& surface, int y) {
    return static_cast<const std::uint8_t*>(surface.pixels) + static_cast<std::ptrdiff_t>(y) * surface.pitch;
}

/// The grey of every palette index, on white; nothing when the palette has a colour.
std::optional<GreyTable> greyPalette(SDL_Surface& surface) {
    const SDL_Palette* palette = surface.format->palette;
    if (palette == nullptr) return std::nullopt;
    GreyTable greys{};
    for (int i = 0; i < std::min(palette->ncolors, 256); ++i) {
        const SDL_Color colour = palette->colors[i];
        if (colour.r != colour.g || colour.g != colour.b) return std::nullopt;
        greys[static_cast<std::size_t>(i)] = onWhite(colour.r, colour.a);
    }
    Uint32 transparent = 0;
    if (SDL_GetColorKey(&surface, &transparent) == 0 && transparent < greys.size()) greys[transparent] = 255;
    return greys;
}

void copyGreys(const SDL_Surface& surface, const GreyTable& greys, bitmap_s& bitmap) {
    for (int y = 0; y < surface.h; ++y) {
        const std::uint8_t* from = surfaceRow(surface, y);
        std::transform(from, from + surface.w, bitmapRow(bitmap, y), [&](std::uint8_t index) { return greys[index]; });
    }
}

Uint32 pixelAt(const std::uint8_t* bytes, int count) {
    if (count == 3) {
        return SDL_BYTEORDER == SDL_LIL_ENDIAN ? Uint32{bytes[0]} | Uint32{bytes[1]} << 8 | Uint32{bytes[2]} << 16
                                               : Uint32{bytes[2]} | Uint32{bytes[1]} << 8 | Uint32{bytes[0]} << 16;
    }
    if (count == 1) return *bytes;
    if (count == 2) {
        Uint16 pixel = 0;
        std::memcpy(&pixel, bytes, sizeof pixel);
        return pixel;
    }
    Uint32 pixel = 0;
    std::memcpy(&pixel, bytes, sizeof pixel);
    return pixel;
}

/// Pixel by pixel, since the library's own conversion of whole surfaces makes 254 of a full green of six bits.
void copyOnWhite(SDL_Surface& surface, bitmap_s& bitmap) {
    Uint32 transparent = 0;
    const bool hasTransparent = SDL_GetColorKey(&surface, &transparent) == 0;
    const int size = surface.format->BytesPerPixel;
    for (int y = 0; y < surface.h; ++y) {
        const std::uint8_t* from = surfaceRow(surface, y);
        std::uint8_t* to = bitmapRow(bitmap, y);
        for (int x = 0; x < surface.w; ++x, from += size, to += 3) {
            const Uint32 pixel = pixelAt(from, size);
            SDL_Color colour{};
            SDL_GetRGBA(pixel, surface.format, &colour.r, &colour.g, &colour.b, &colour.a);
            if (hasTransparent && pixel == transparent) colour.a = 0;
            to[0] = onWhite(colour.r, colour.a);
            to[1] = onWhite(colour.g, colour.a);
            to[2] = onWhite(colour.b, colour.a);
        }
    }
}

/// What an encoder writes goes on into the file; a failure stays with the file.
std::size_t writeThrough(SDL_RWops* stream, const void* bytes, std::size_t size, std::size_t count) {
    auto* file = static_cast<ReplacedFile*>(stream->hidden.unknown.data1);
    return file->append({static_cast<const std::uint8_t*>(bytes), size * count}) ? count : 0;
}

}  // namespace

SurfacePtr decodeSurface(PictureKind kind, std::span<const std::uint8_t> bytes, std::string& reason) {
    SDL_RWops* stream = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
    constexpr int kCloseStream = 1;
    SDL_Surface* surface = nullptr;
    if (stream != nullptr) {
        surface = kind == PictureKind::Bmp ? SDL_LoadBMP_RW(stream, kCloseStream)
                                           : IMG_LoadTyped_RW(stream, kCloseStream, "PNG");
    }
    if (surface == nullptr) reason = std::string("is damaged: ") + SDL_GetError();
    return SurfacePtr(surface);
}

BitmapPtr recordFromSurface(SDL_Surface& surface, std::string& reason) {
    if (surface.format->BitsPerPixel < 8) {
        reason = "has pixels that share a byte";
        return nullptr;
    }
    const std::optional<GreyTable> greys = greyPalette(surface);
    BitmapPtr bitmap = makeBitmap(surface.w, surface.h, greys ? 8 : 24);
    if (bitmap == nullptr) {
        reason = "is too large for a bitmap record";
    } else if (greys) {
        copyGreys(surface, *greys, *bitmap);
    } else {
        copyOnWhite(surface, *bitmap);
    }
    return bitmap;
}

bool encodePng(ReplacedFile& file, const bitmap_s& bitmap, std::string& reason) {
    const SurfacePtr surface =
        borrowSurface(bitmap_pixels(&bitmap), {bitmap.width, bitmap.height}, bitmap.depth, bitmap.scanline);
    const std::unique_ptr<SDL_RWops, CloseStream> stream(SDL_AllocRW());
    if (surface != nullptr && stream != nullptr) {
        stream->type = SDL_RWOPS_UNKNOWN;
        stream->hidden.unknown.data1 = &file;
        stream->write = writeThrough;
        constexpr int kKeepStream = 0;
        if (IMG_SavePNG_RW(surface.get(), stream.get(), kKeepStream) == 0) return !file.failed();
    }
    reason = SDL_GetError();
    return false;
}

}  // namespace host
