#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace host {

/// A file in the trash.
struct Trashed {
    std::filesystem::path was;  ///< where it stood; absolute
    std::filesystem::path now;  ///< where it lies; empty when the system does not let it be found again
};

/// Moves a file into the user's trash, from which file managers bring it back too; where that is not possible, into a
/// folder "Trash" inside the storage. A symbolic link is moved itself. Nothing, with the reason in `reason`, when the
/// file cannot be moved: then it is where it was.
[[nodiscard]] std::optional<Trashed> moveToTrash(const std::filesystem::path& file,
                                                 const std::filesystem::path& storageRoot, std::string& reason);

/// Moves a file from the trash back to where it was; beside it, as "NAME (2)", where another has come in its place.
/// Makes missing folders. False, with the reason in `reason`, when it cannot be moved.
[[nodiscard]] bool restore(const Trashed& trashed, std::string& reason);

}  // namespace host
