#pragma once

#include <cstdint>
#include <span>

namespace host {

/// What a file says of its picture before anything of it is decoded.
struct PictureHeader {
    const char* kind = nullptr;  ///< "JPG", "WEBP", "GIF" or "TIF"; null for any other file
    std::int64_t width = 0;      ///< pixels, as stored
    std::int64_t height = 0;
    unsigned orientation = 1;  ///< of a JPEG, as EXIF counts: how the stored picture has to be turned to stand upright
};

/// Reads the header of a JPEG, WebP, GIF or TIFF file. Returns why the picture cannot be read: its headers are cut or
/// damaged, it has four inks, it is too large (see findSizeFault), or it has no end; null when nothing speaks against
/// it, and for files of other kinds. Decoders believe sizes, and would make room for whatever a damaged one promises.
[[nodiscard]] const char* readPictureHeader(std::span<const std::uint8_t> file, PictureHeader& header);

/// Why a picture of that many pixels is not read: it is empty, or larger than 65,535 in a side or kMostPicturePixels;
/// null when it may be.
[[nodiscard]] const char* findSizeFault(std::int64_t width, std::int64_t height);

}  // namespace host
