#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "platform/host/files/file_handle.h"
#include "platform/host/files/picture_file.h"

namespace host {

/// A hidden file beside a target, which takes the target's place in one step: the path holds the old or the new content
/// at every moment. Room on the disk can be taken for it beforehand, so that a later save cannot fail for want of it.
/// While it lives it is locked, so that no other program takes it for abandoned. Symbolic links are followed to the
/// file that they mean.
class Replacement {
public:
    explicit Replacement(std::filesystem::path target);
    /// Removes the hidden file, unless it has been put.
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// The target, as it was named.
    [[nodiscard]] const std::filesystem::path& target() const { return named_; }

    /// Makes the hidden file, and its folder where that is missing, and takes room for that many bytes; on file systems
    /// that cannot take room, the file is only made. False, with the reason in `reason`, when it cannot be made or
    /// there is too little room; room taken before is kept.
    [[nodiscard]] bool reserve(std::uint64_t bytes, std::string& reason);

    /// Writes these bytes, into the room that was reserved, and puts the file in the target's place; with Sync::Yes
    /// once they are safely on the disk. The permissions of a present file are kept, and its owner and group where the
    /// system permits. False, with the reason in `reason`, when that fails or the target is no ordinary file or must
    /// not be written: then the target is as before, the room is kept, and it may be tried again. Afterwards there is
    /// no room.
    [[nodiscard]] bool put(std::span<const std::uint8_t> bytes, Sync sync, std::string& reason);

private:
    [[nodiscard]] bool makeAside(std::string& reason);
    [[nodiscard]] bool replace(std::span<const std::uint8_t> bytes, Sync sync, std::string& reason);
    [[nodiscard]] bool isAside() const;
    /// After a failure: neither more nor less than the room that was reserved.
    void keepRoom();
    void removeAside();

    std::filesystem::path named_;
    std::filesystem::path folder_;  ///< the real target's
    std::filesystem::path real_;    ///< the target, behind all symbolic links
    std::string aside_;
    FileHandle handle_;
    std::uint64_t room_ = 0;  ///< bytes
};

/// Puts these bytes in the file's place by a Replacement without reserved room.
[[nodiscard]] bool replaceFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes, Sync sync,
                               std::string& reason);

/// Removes what programs that were killed while they saved have left in this folder: hidden files that nobody has
/// locked.
void removeAbandoned(const std::filesystem::path& folder);

}  // namespace host
