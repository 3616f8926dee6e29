#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "platform/host/base/file_handle.h"
#include "platform/host/files/picture_file.h"

namespace host {

/// A file written aside and then put in the place of another in one step, so that the path holds the old or the
/// new content at every moment. The file aside lies in the same folder, under a hidden name, and goes away with
/// this object. After a failure every later call fails too; `reason` tells the first.
class ReplacedFile {
public:
    ReplacedFile() = default;
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    ~ReplacedFile();

    /// Starts the file aside. Makes missing folders, follows symbolic links to the file they mean, and takes over
    /// the permissions of the present file. False when the target is no ordinary file or must not be written.
    bool open(const std::filesystem::path& target);

    bool append(std::span<const std::uint8_t> bytes);

    /// Puts the new file into its place; with Sync::Yes once it is safely on the disk.
    bool commit(Sync sync);

    [[nodiscard]] bool failed() const { return !reason_.empty(); }
    [[nodiscard]] const std::string& reason() const { return reason_; }

private:
    bool fail(const char* what);
    bool createAside();
    bool checkTarget();

    std::filesystem::path target_;
    std::filesystem::path aside_;
    FileHandle handle_;
    std::string reason_;
};

/// Removes what programs that were killed while they saved have left in this folder: files aside that nobody has
/// written to for an hour.
void removeAbandoned(const std::filesystem::path& folder);

}  // namespace host
