#include "platform/host/screen/surface.h"

#include <array>

namespace host {

SurfacePtr borrowSurface(const std::uint8_t* pixels, Size size, int depth, int stride) {
    const Uint32 format = depth == 8    ? SDL_PIXELFORMAT_INDEX8
                          : depth == 24 ? SDL_PIXELFORMAT_RGB24
                                        : SDL_PIXELFORMAT_RGBA32;
    // The library's interface knows no pixels that are only read.
    void* first = const_cast<std::uint8_t*>(pixels);
    SurfacePtr surface(SDL_CreateRGBSurfaceWithFormatFrom(first, size.w, size.h, depth, stride, format));
    if (surface == nullptr || depth != 8) return surface;
    std::array<SDL_Color, 256> greys{};
    for (std::size_t i = 0; i < greys.size(); ++i) {
        const auto grey = static_cast<std::uint8_t>(i);
        greys[i] = {grey, grey, grey, 255};
    }
    SDL_SetPaletteColors(surface->format->palette, greys.data(), 0, static_cast<int>(greys.size()));
    return surface;
}

}  // namespace host
