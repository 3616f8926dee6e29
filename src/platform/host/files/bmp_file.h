#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "platform/host/files/picture_file.h"

namespace host {

/// The picture in a BMP file, which is open in `file`, at its start. Null, with the reason in `reason`, when it is cut,
/// damaged, too large or of an unknown kind.
[[nodiscard]] Picture loadBmp(std::istream& file, std::string& reason);

/// A bottom-up BMP file with the pixels of a record of depth 8 (grey, with its palette), 24 or 32 (with alpha).
[[nodiscard]] std::vector<std::uint8_t> encodeBmp(const bitmap_s& bitmap);

}  // namespace host
