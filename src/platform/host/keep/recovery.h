#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/host/files/storage.h"

namespace host {

/// Where a storage keeps the journals of its pictures.
inline constexpr const char* kRecoveryFolder = ".recovery";

/// A page that a program left behind which ended before it had saved it.
struct LeftPage {
    std::filesystem::path picture;  ///< where it is now; where it belongs when it could not be saved
    bool deleted = false;           ///< it was white, and its picture is in the trash
    std::string error{};            ///< one line; empty when it is safe
};

/// Saves the last pages that the storage's journals hold to their pictures, as the program would have done in leaving
/// them: a white one takes its picture to the trash; one whose picture has changed since becomes a picture of its own;
/// one whose folder has gone comes to the storage's pictures. The journals of running programs are passed over, those
/// that could not be read or saved stay. `name` picks one; all when it is empty. Tells of those that something was done
/// for.
[[nodiscard]] std::vector<LeftPage> recoverPages(const Storage& storage, const std::string& name = {});

/// True when there are page logs of that name in the folder.
[[nodiscard]] bool hasLeftPages(const std::filesystem::path& folder, const std::string& name);

}  // namespace host
