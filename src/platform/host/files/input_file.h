#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "platform/host/base/file_handle.h"

namespace host {

/// An ordinary file, opened for reading at any place.
class InputFile {
public:
    /// False, with the reason in `reason`, when there is no ordinary file that can be read.
    [[nodiscard]] bool open(const std::filesystem::path& path, std::string& reason);

    /// Bytes in the file when it was opened.
    [[nodiscard]] std::uint64_t size() const { return size_; }

    /// Fills all of `into` with the bytes from `offset` on. False when the file ends before or cannot be read.
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> into) const;

private:
    FileHandle handle_;
    std::uint64_t size_ = 0;
};

}  // namespace host
