#include "platform/host/files/replaced_file.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <utility>

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr const char* kAsidePrefix = ".colour-";
constexpr const char* kAsideEnding = ".part";

/// Owns an open file descriptor; -1 is none.
class FileHandle {
public:
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle() { close(); }

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }

    /// False when the system reports only now that something could not be written.
    bool close() {
        if (descriptor_ < 0) return true;
        return ::close(std::exchange(descriptor_, -1)) == 0;
    }

private:
    int descriptor_;
};

/// Where a write to `path` really goes. Stays at the link when the links lead in a circle; opening tells then.
fs::path followLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code ignored;
    for (int i = 0; i < kMostLinks && fs::is_symlink(path, ignored); ++i) {
        path = path.parent_path() / fs::read_symlink(path, ignored);
    }
    return path;
}

void syncFolder(const fs::path& folder) {
    // Some file systems cannot sync a folder. The picture is in its place by then, so this is no failure.
    const FileHandle handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.isOpen()) static_cast<void>(::fsync(handle.get()));
}

std::string withCause(const char* what) { return std::string(what) + ": " + std::strerror(errno); }

bool write(FileHandle& file, std::span<const std::uint8_t> bytes, Sync sync) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return (sync == Sync::No || ::fsync(file.get()) == 0) && file.close();
}

/// Why the target cannot be replaced by such a file; empty when nothing speaks against it.
std::string findFault(const fs::path& target, const struct stat& present) {
    if (!S_ISREG(present.st_mode)) return "is not an ordinary file";
    // A rename would replace a write-protected file without a word.
    return ::access(target.c_str(), W_OK) == 0 ? "" : withCause("is write-protected");
}

}  // namespace

bool replaceFile(const fs::path& file, std::span<const std::uint8_t> bytes, Sync sync, std::string& reason) {
    const fs::path target = followLinks(file);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::error_code error;
    fs::create_directories(folder, error);
    struct stat present {};
    const bool exists = ::stat(target.c_str(), &present) == 0;
    reason = error ? "its folder cannot be made: " + error.message() : exists ? findFault(target, present) : "";
    if (!reason.empty()) return false;

    constexpr int kUsualMode = 0666;
    constexpr mode_t kPermissions = 07777;
    std::string aside = folder / (std::string(kAsidePrefix) + "XXXXXX" + kAsideEnding);
    FileHandle handle(g_mkstemp_full(aside.data(), O_WRONLY | O_CLOEXEC, kUsualMode));
    if (!handle.isOpen()) {
        reason = withCause("its folder cannot be written");
    } else if (exists && ::fchmod(handle.get(), present.st_mode & kPermissions) != 0) {
        reason = withCause("its permissions cannot be kept");
    } else if (!write(handle, bytes, sync)) {
        reason = withCause("cannot be written");
    } else if (std::rename(aside.c_str(), target.c_str()) != 0) {
        reason = withCause("cannot be replaced");
    } else {
        if (sync == Sync::Yes) syncFolder(folder);
        return true;
    }
    ::unlink(aside.c_str());
    return false;
}

void removeAbandoned(const fs::path& folder) {
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(kAsidePrefix) || !name.ends_with(kAsideEnding)) continue;
        std::error_code gone;
        if (entry->last_write_time(gone) < longAgo && !gone) fs::remove(entry->path(), gone);
    }
}

}  // namespace host
