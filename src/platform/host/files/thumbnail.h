#pragma once

#include <filesystem>
#include <string>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

/// Reads a picture as loadPicture does, shrunk in its own shape until it fits into `room`; a picture that fits stays as
/// it is. Pictures of the kind that is saved are shrunk while they are read and are never in memory as a whole. Null,
/// with one line in `error`, as for loadPicture.
[[nodiscard]] BitmapPtr loadThumbnail(const std::filesystem::path& file, Size room, std::string& error);

}  // namespace host
