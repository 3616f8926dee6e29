#include "platform/host/files/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace host {

bool InputFile::open(const std::filesystem::path& path, std::string& reason) {
    // Without O_NONBLOCK a named pipe that nobody writes to would stop the program here.
    handle_ = FileHandle(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat state {};
    if (!handle_.isOpen() || ::fstat(handle_.get(), &state) != 0) {
        reason = std::strerror(errno);
        return false;
    }
    if (!S_ISREG(state.st_mode)) {
        reason = "is not an ordinary file";
        return false;
    }
    size_ = static_cast<std::uint64_t>(state.st_size);
    return true;
}

bool InputFile::read(std::uint64_t offset, std::span<std::uint8_t> into) const {
    while (!into.empty()) {
        const ssize_t count = ::pread(handle_.get(), into.data(), into.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        offset += static_cast<std::uint64_t>(count);
        into = into.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace host
