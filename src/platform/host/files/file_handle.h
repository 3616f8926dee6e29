#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace host {

/// Makes a system call again for as long as a signal interrupts it.
template <typename Call>
auto untilDone(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// Writes all of these bytes at that place of an open file. False, with the reason in errno, on failure.
[[nodiscard]] inline bool writeAt(int file, off_t at, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = untilDone([&] { return ::pwrite(file, bytes.data(), bytes.size(), at); });
        if (count < 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        at += count;
    }
    return true;
}

/// Owns an open file descriptor; -1 is none.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        reset(std::exchange(other.descriptor_, -1));
        return *this;
    }
    ~FileHandle() { reset(); }

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }

    /// Closes the file, if one is open, and owns this one. Closing is never repeated: the descriptor is free even when
    /// a signal has interrupted it, and may be another file's by then.
    void reset(int descriptor = -1) {
        if (isOpen()) ::close(descriptor_);
        descriptor_ = descriptor;
    }

private:
    int descriptor_ = -1;
};

}  // namespace host
