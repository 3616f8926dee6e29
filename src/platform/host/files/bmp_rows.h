#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/host/files/bmp_header.h"
#include "platform/host/files/input_file.h"
#include "platform/host/files/replaced_file.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

/// Copies pixels of three bytes each with the first and the third exchanged: R, G, B to B, G, R and back. The
/// blocks do not overlap.
void swapRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

/// True for the BMPs that readBmpRows reads: uncompressed with 24 bits, or with 8 bits and a palette of all the
/// 256 colours. They are what pictures are saved as.
[[nodiscard]] bool isPlainBmp(const BmpHeader& header);

/// Reads a plain BMP, straight into its record. Null, with `reason` set, when the file cannot be read or memory is
/// short; null with an empty `reason` when the palette has colours, which is for a general reader.
[[nodiscard]] BitmapPtr readBmpRows(const InputFile& file, const BmpHeader& header, std::string& reason);

/// Writes headers and rows of a picture of depth 8, 24 or 32. False when the file has failed.
bool writeBmp(ReplacedFile& file, const bitmap_s& bitmap);

}  // namespace host
