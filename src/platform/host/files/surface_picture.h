#pragma once

#include <SDL.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/host/files/replaced_file.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using SurfacePtr = std::unique_ptr<SDL_Surface, FreeSurface>;

enum class PictureKind { Bmp, Png };

/// Decodes a file that has been checked before. Null, with the reason in `reason`, when it is damaged.
[[nodiscard]] SurfacePtr decodeSurface(PictureKind kind, std::span<const std::uint8_t> bytes, std::string& reason);

/// A record of depth 8 when the surface has a palette of greys, else of depth 24 on white. Null, with the reason in
/// `reason`, when it does not fit a record, memory is short, or pixels share a byte (decoders unpack them).
[[nodiscard]] BitmapPtr recordFromSurface(SDL_Surface& surface, std::string& reason);

/// Writes a picture of depth 8, 24 or 32. False, with the reason in `reason` or in the file, on failure.
[[nodiscard]] bool writePng(ReplacedFile& file, const bitmap_s& bitmap, std::string& reason);

}  // namespace host
