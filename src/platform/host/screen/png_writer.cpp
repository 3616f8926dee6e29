#include "platform/host/screen/png_writer.h"

#include <SDL_image.h>

#include "platform/host/screen/surface.h"

namespace host {

bool writePng(const std::filesystem::path& file, const Framebuffer& pixels, std::string& error) {
    const SurfacePtr surface =
        borrowSurface(pixels.at(0, 0), pixels.size(), 8 * pixels.bytesPerPixel(), static_cast<int>(pixels.stride()));
    SDL_RWops* stream = surface ? SDL_RWFromFile(file.c_str(), "wb") : nullptr;
    bool written = stream != nullptr && IMG_SavePNG_RW(surface.get(), stream, 0) == 0;
    // A full disk may show only when the last bytes leave the stream's buffer.
    if (stream != nullptr && SDL_RWclose(stream) != 0) written = false;
    if (!written) error = file.string() + ": cannot be written: " + SDL_GetError();
    return written;
}

}  // namespace host
