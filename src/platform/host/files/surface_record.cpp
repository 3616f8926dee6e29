#include "platform/host/files/surface_record.h"

#include <algorithm>
#include <cstring>

#include "platform/host/screen/paint.h"

namespace host {

Picture recordFrom(SDL_Surface& surface) {
    const SDL_Palette* palette = surface.format->palette;
    const bool grey = palette != nullptr && std::all_of(palette->colors, palette->colors + palette->ncolors,
                                                        [](SDL_Color c) { return c.r == c.g && c.g == c.b; });
    Picture picture{makeBitmap(surface.w, surface.h, grey ? 8 : 24)};
    Uint32 key = 0;
    const bool keyed = SDL_GetColorKey(&surface, &key) == 0;
    const std::size_t bytes = surface.format->BytesPerPixel;
    for (int y = 0; picture.bitmap != nullptr && y < surface.h; ++y) {
        const auto* from = static_cast<const std::uint8_t*>(surface.pixels) + std::ptrdiff_t{y} * surface.pitch;
        std::uint8_t* to = bitmapRow(*picture.bitmap, y);
        // Pixel by pixel: the library's conversion of whole surfaces makes 254 of a full green of six bits.
        for (int x = 0; x < surface.w; ++x, from += bytes) {
            Uint32 pixel = 0;
            std::memcpy(&pixel, from, bytes);  // little-endian, like every panel
            SDL_Color colour{};
            SDL_GetRGBA(pixel, surface.format, &colour.r, &colour.g, &colour.b, &colour.a);
            if (keyed && pixel == key) colour.a = 0;
            if (colour.a < 0xFF) picture.whole = false;
            *to++ = blend(0xFF, colour.r, colour.a);
            if (grey) continue;
            *to++ = blend(0xFF, colour.g, colour.a);
            *to++ = blend(0xFF, colour.b, colour.a);
        }
    }
    return picture;
}

}  // namespace host
