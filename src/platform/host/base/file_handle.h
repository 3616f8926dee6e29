#pragma once

#include <unistd.h>

#include <utility>

namespace host {

/// Owns an open file descriptor; -1 is none.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileHandle() { close(); }

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }

    /// False when the system reports only now that something could not be written.
    bool close() {
        if (descriptor_ < 0) return true;
        return ::close(std::exchange(descriptor_, -1)) == 0;
    }

private:
    int descriptor_ = -1;
};

}  // namespace host
