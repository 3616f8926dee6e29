#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <vector>

#include "platform/host/screen/bitmap_record.h"

namespace host {

class Replacement;

/// The largest picture that is read, in pixels (64 million): a damaged header cannot ask for more memory than a
/// large photograph takes, a few hundred megabytes while it is unpacked.
inline constexpr std::int64_t kMostPicturePixels = std::int64_t{64} << 20;

/// Which kinds of file are read. Pages: BMP and PNG, what a page is saved as. All: JPEG, WebP, GIF (its first picture)
/// and TIFF too.
enum class Formats { Pages, All };

/// What was read of a picture's file.
struct Picture {
    BitmapPtr bitmap;
    /// False when the record holds less than the file: there was transparency or more than 8 bits a channel, or the
    /// file is neither BMP nor PNG. Saving the record over the file would lose that.
    bool whole = true;
};

/// Reads a picture; its kind is told by its content, not its name. Grey BMP and PNG pictures give depth 8, all others
/// 24 (transparent parts on white). No record, with one line that names file and reason in `error`, when it is missing,
/// damaged, cannot be read to its end, is of another kind, or is larger than 65,535 in a side, kMostPicturePixels or a
/// record can hold.
[[nodiscard]] Picture readPicture(const std::filesystem::path& file, Formats formats, std::string& error);

/// The record of readPicture with Formats::Pages.
[[nodiscard]] BitmapPtr loadPicture(const std::filesystem::path& file, std::string& error);

enum class Sync { Yes, No };

/// Writes a picture as the name's ending says: .bmp (8-bit grey, 24-bit, or 32-bit where the record has alpha) or
/// .png; without losing a pixel. Makes missing folders, follows a symbolic link to its file and keeps the
/// permissions and, where the system permits, the owner of a present file. Written beside the target, synced and
/// renamed over it, so the path holds the old or the new picture at every moment. False, with one line in `error`, on
/// failure; the old file is then untouched. Sync::No is for measuring.
[[nodiscard]] bool savePicture(const std::filesystem::path& file, const bitmap_s& bitmap, std::string& error,
                               Sync sync = Sync::Yes);

/// The same into the target of a replacement, for which room may have been reserved.
[[nodiscard]] bool savePicture(Replacement& replacement, const bitmap_s& bitmap, std::string& error,
                               Sync sync = Sync::Yes);

/// All bytes of an open file; none when there are more than the largest picture can have.
[[nodiscard]] std::vector<std::uint8_t> contentsOf(std::istream& file);

/// True when the name's ending is one that pages are saved under: .bmp, .png; any case.
[[nodiscard]] bool isPageName(const std::filesystem::path& file);

/// True when the name's ending is one that pictures are read from: those of pages, .jpg, .jpeg, .webp, .gif, .tif and
/// .tiff; any case.
[[nodiscard]] bool isPictureName(const std::filesystem::path& file);

/// A file's name in a message: what would break the line or the terminal is shown as '?'.
[[nodiscard]] std::string printable(const std::filesystem::path& file);

}  // namespace host
