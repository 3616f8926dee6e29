#pragma once

#include <filesystem>
#include <string>

#include "platform/host/screen/bitmap_record.h"

namespace host {

/// Reads a picture: any BMP, PNG; told by its content, not its name. Grey pictures give depth 8, all others 24
/// (transparent parts on white). Null, with one line that names file and reason in `error`, when it is missing,
/// damaged, of another kind, or larger than 65,535 in a side or a record can hold. Never takes more memory than
/// the file's own content asks for.
[[nodiscard]] BitmapPtr loadPicture(const std::filesystem::path& file, std::string& error);

enum class Sync { Yes, No };

/// Writes a picture as the name's ending says: .bmp (8-bit grey or 24-bit) or .png; without losing a pixel.
/// Written beside the target, synced and renamed over it, so the path holds the old or the new picture at every
/// moment. False, with one line in `error`, on failure; the old file is then untouched. Sync::No is for
/// measuring.
[[nodiscard]] bool savePicture(const std::filesystem::path& file, const bitmap_s& bitmap, std::string& error,
                               Sync sync = Sync::Yes);

/// True when the name's ending is one that pictures are kept under (.bmp, .png; any case).
[[nodiscard]] bool isPictureName(const std::filesystem::path& file);

}  // namespace host
