#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/host/files/picture_file.h"

namespace host {

/// The picture in a JPEG (upright, as its EXIF notes say), WebP, GIF (the first of its pictures) or TIFF file, of depth
/// 24 and on white, or of depth 8 where its palette is grey; never called whole, since none of these is saved. Null,
/// with the reason in `reason`, when it is cut, damaged, too large or of another kind.
[[nodiscard]] Picture loadPhotograph(std::span<const std::uint8_t> file, std::string& reason);

}  // namespace host
