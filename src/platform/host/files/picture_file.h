#pragma once

#include <filesystem>
#include <string>

#include "platform/host/screen/bitmap_record.h"

namespace host {

/// The largest picture that is read, in pixels (64 million): a damaged header cannot ask for more memory than a
/// large photograph takes, a few hundred megabytes while it is unpacked.
inline constexpr std::int64_t kMostPicturePixels = std::int64_t{64} << 20;

/// Reads a picture: any BMP, PNG; told by its content, not its name. Grey pictures give depth 8, all others 24
/// (transparent parts on white). Null, with one line that names file and reason in `error`, when it is missing,
/// damaged, of another kind, or larger than 65,535 in a side, kMostPicturePixels or a record can hold.
[[nodiscard]] BitmapPtr loadPicture(const std::filesystem::path& file, std::string& error);

enum class Sync { Yes, No };

/// Writes a picture as the name's ending says: .bmp (8-bit grey, 24-bit, or 32-bit where the record has alpha) or
/// .png; without losing a pixel. Makes missing folders, follows a symbolic link to its file and keeps the
/// permissions of a present file. Written beside the target, synced and renamed over it, so the path holds the old
/// or the new picture at every moment. False, with one line in `error`, on failure; the old file is then
/// untouched. Sync::No is for measuring.
[[nodiscard]] bool savePicture(const std::filesystem::path& file, const bitmap_s& bitmap, std::string& error,
                               Sync sync = Sync::Yes);

/// True when the name's ending is one that pictures are kept under (.bmp, .png; any case).
[[nodiscard]] bool isPictureName(const std::filesystem::path& file);

/// A file's name in a message: what would break the line or the terminal is shown as '?'.
[[nodiscard]] std::string printable(const std::filesystem::path& file);

}  // namespace host
