#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/host/files/replaced_file.h"
#include "platform/host/screen/bitmap_record.h"
#include "platform/host/screen/surface.h"

namespace host {

enum class PictureKind { Bmp, Png };

/// Decodes a file that has been checked before. Null, with the reason in `reason`, when it is damaged.
[[nodiscard]] SurfacePtr decodeSurface(PictureKind kind, std::span<const std::uint8_t> bytes, std::string& reason);

/// A record of depth 8 when the surface has a palette of greys, else of depth 24 on white. Null, with the reason in
/// `reason`, when it does not fit a record, memory is short, or pixels share a byte (decoders unpack them).
[[nodiscard]] BitmapPtr recordFromSurface(SDL_Surface& surface, std::string& reason);

/// Writes a picture of depth 8, 24 or 32 as PNG. False, with the reason in `reason` or in the file, on failure.
[[nodiscard]] bool encodePng(ReplacedFile& file, const bitmap_s& bitmap, std::string& reason);

}  // namespace host
