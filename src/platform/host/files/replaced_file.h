#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "platform/host/files/picture_file.h"

namespace host {

/// Writes these bytes aside, under a hidden name in the same folder, and puts them in the file's place in one step,
/// with Sync::Yes once they are safely on the disk: the path holds the old or the new content at every moment. Makes
/// missing folders, follows symbolic links to the file they mean, and keeps the permissions of the present file. False,
/// with the reason in `reason`, when that fails or the target is no ordinary file or must not be written.
[[nodiscard]] bool replaceFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes, Sync sync,
                               std::string& reason);

/// Removes what programs that were killed while they saved have left in this folder: files aside that nobody has
/// written to for an hour.
void removeAbandoned(const std::filesystem::path& folder);

}  // namespace host
