#pragma once

#include <unistd.h>

#include <cerrno>

namespace host {

/// Makes a system call again for as long as a signal interrupts it.
template <typename Call>
auto untilDone(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// Owns an open file descriptor; -1 is none.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
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
