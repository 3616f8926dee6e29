#include "platform/host/screen/png_writer.h"

#include <SDL.h>
#include <SDL_image.h>

#include <memory>

namespace host {

namespace {

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using SurfacePtr = std::unique_ptr<SDL_Surface, FreeSurface>;

/// A surface over the buffer's own pixels, which the library reads and never changes.
SurfacePtr surfaceOver(const Framebuffer& pixels) {
    const bool grey = pixels.format() == PixelFormat::Grey8;
    void* first = const_cast<std::uint8_t*>(pixels.at(0, 0));
    SurfacePtr surface(SDL_CreateRGBSurfaceWithFormatFrom(
        first, pixels.size().w, pixels.size().h, grey ? 8 : 24, static_cast<int>(pixels.stride()),
        static_cast<Uint32>(grey ? SDL_PIXELFORMAT_INDEX8 : SDL_PIXELFORMAT_RGB24)));
    if (!surface || !grey) return surface;
    SDL_Color greys[256];
    for (int level = 0; level < 256; ++level) {
        const auto byte = static_cast<Uint8>(level);
        greys[level] = {byte, byte, byte, 255};
    }
    SDL_SetPaletteColors(surface->format->palette, greys, 0, 256);
    return surface;
}

}  // namespace

bool writePng(const std::filesystem::path& file, const Framebuffer& pixels, std::string& error) {
    const SurfacePtr surface = surfaceOver(pixels);
    SDL_RWops* stream = surface ? SDL_RWFromFile(file.c_str(), "wb") : nullptr;
    bool written = stream != nullptr && IMG_SavePNG_RW(surface.get(), stream, 0) == 0;
    // A full disk may show only when the last bytes leave the stream's buffer.
    if (stream != nullptr && SDL_RWclose(stream) != 0) written = false;
    if (!written) error = file.string() + ": cannot be written: " + SDL_GetError();
    return written;
}

}  // namespace host
