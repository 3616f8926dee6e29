#include "platform/host/files/replaced_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr const char* kAsidePrefix = ".colour-";
constexpr const char* kAsideEnding = ".part";

/// Where a write to `path` really goes. Stays at the link when the links lead in a circle; opening tells then.
fs::path followLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code ignored;
    for (int i = 0; i < kMostLinks && fs::is_symlink(path, ignored); ++i) {
        path = path.parent_path() / fs::read_symlink(path, ignored);
    }
    return path;
}

fs::path folderOf(const fs::path& path) { return path.has_parent_path() ? path.parent_path() : fs::path("."); }

void syncFolder(const fs::path& folder) {
    // Some file systems cannot sync a folder. The picture is in its place by then, so this is no failure.
    const FileHandle handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.isOpen()) static_cast<void>(::fsync(handle.get()));
}

}  // namespace

ReplacedFile::~ReplacedFile() {
    if (!aside_.empty()) ::unlink(aside_.c_str());
}

bool ReplacedFile::open(const fs::path& target) {
    target_ = followLinks(target);
    std::error_code error;
    fs::create_directories(folderOf(target_), error);
    if (error) {
        reason_ = "its folder cannot be made: " + error.message();
        return false;
    }
    return checkTarget() && createAside();
}

bool ReplacedFile::checkTarget() {
    struct stat state {};
    if (::stat(target_.c_str(), &state) != 0) return true;
    if (!S_ISREG(state.st_mode)) {
        reason_ = "is not an ordinary file";
        return false;
    }
    // A rename would replace a write-protected file without a word.
    return ::access(target_.c_str(), W_OK) == 0 || fail("is write-protected");
}

bool ReplacedFile::createAside() {
    static std::atomic<unsigned> serial{0};
    constexpr mode_t kUsualMode = 0666;
    constexpr mode_t kPermissions = 07777;
    do {
        const std::string number = std::to_string(::getpid()) + "-" + std::to_string(serial++);
        aside_ = folderOf(target_) / (kAsidePrefix + number + kAsideEnding);
        handle_ = FileHandle(::open(aside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kUsualMode));
    } while (!handle_.isOpen() && errno == EEXIST);
    if (!handle_.isOpen()) {
        aside_.clear();
        return fail("its folder cannot be written");
    }
    struct stat present {};
    if (::stat(target_.c_str(), &present) != 0) return true;
    return ::fchmod(handle_.get(), present.st_mode & kPermissions) == 0 || fail("its permissions cannot be kept");
}

bool ReplacedFile::append(std::span<const std::uint8_t> bytes) {
    if (failed()) return false;
    while (!bytes.empty()) {
        const ssize_t count = ::write(handle_.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return fail("cannot be written");
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool ReplacedFile::commit(Sync sync) {
    if (failed()) return false;
    if (sync == Sync::Yes && ::fsync(handle_.get()) != 0) return fail("cannot be written");
    if (!handle_.close()) return fail("cannot be written");
    if (std::rename(aside_.c_str(), target_.c_str()) != 0) return fail("cannot be replaced");
    aside_.clear();
    if (sync == Sync::Yes) syncFolder(folderOf(target_));
    return true;
}

bool ReplacedFile::fail(const char* what) {
    reason_ = std::string(what) + ": " + std::strerror(errno);
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
