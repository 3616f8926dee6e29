#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "platform/host/files/picture_file.h"

namespace host {

/// The picture in a PNG file, which is open in `file`, at its start. Null, with the reason in `reason`, when it is cut,
/// damaged, too large, or promises more pixels than its content can hold.
[[nodiscard]] Picture loadPng(std::istream& file, std::string& reason);

/// A PNG file with the pixels of a record of depth 8, 24 or 32. Empty, with the reason in `reason`, on failure.
[[nodiscard]] std::vector<std::uint8_t> encodePng(const bitmap_s& bitmap, std::string& reason);

}  // namespace host
