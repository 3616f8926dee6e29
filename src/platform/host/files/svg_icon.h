#pragma once

#include <filesystem>
#include <string>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

/// How an icon is laid out in its picture.
struct IconLayout {
    /// The picture, in pixels.
    Size size;
    /// Units across the drawing, as its view box has them. A unit is then a whole number of pixels, with blank
    /// margins in the picture, and lines one unit wide on whole coordinates fill whole pixels. 0: the drawing fills
    /// the picture and takes no heed of pixels.
    int grid = 0;
    /// 32-bit with alpha; otherwise 8-bit grey on white.
    bool transparent = false;
};

/// Draws an SVG file (paths, basic shapes and gradients; no text). Null, with one line in `error` that names the
/// file and the reason, when it is missing, cut off or no drawing, or when the size is none.
[[nodiscard]] BitmapPtr drawSvgIcon(const std::filesystem::path& file, const IconLayout& layout, std::string& error);

}  // namespace host
