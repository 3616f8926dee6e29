#include "platform/host/files/replaced_file.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <system_error>
#include <utility>

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

void syncFolder(const fs::path& folder) {
    // Some file systems cannot sync a folder. The picture is in its place by then, so this is no failure.
    const FileHandle handle(untilDone([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (handle.isOpen()) static_cast<void>(untilDone([&] { return ::fsync(handle.get()); }));
}

std::string withCause(const char* what) { return std::string(what) + ": " + std::strerror(errno); }

bool takeRoom(int file, std::uint64_t bytes) {
    return untilDone([&] { return ::fallocate(file, 0, 0, static_cast<off_t>(bytes)); }) == 0;
}

bool write(int file, std::span<const std::uint8_t> bytes, Sync sync) {
    if (!writeAt(file, 0, bytes)) return false;
    if (untilDone([&] { return ::ftruncate(file, static_cast<off_t>(bytes.size())); }) != 0) return false;
    return sync == Sync::No || untilDone([&] { return ::fsync(file); }) == 0;
}

/// Why the target cannot be replaced by such a file; empty when nothing speaks against it.
std::string findFault(const fs::path& target, const struct stat& present) {
    if (!S_ISREG(present.st_mode)) return "is not an ordinary file";
    // A rename would replace a write-protected file without a word.
    return ::access(target.c_str(), W_OK) == 0 ? "" : withCause("is write-protected");
}

/// Makes the file like the present one. False when its permissions cannot be kept; only the superuser may give a file
/// away, but a group is often one's own.
bool keepRights(int file, const struct stat& present) {
    constexpr mode_t kPermissions = 07777;
    constexpr uid_t kSameOwner = static_cast<uid_t>(-1);
    if (untilDone([&] { return ::fchown(file, present.st_uid, present.st_gid); }) != 0)
        static_cast<void>(untilDone([&] { return ::fchown(file, kSameOwner, present.st_gid); }));
    return untilDone([&] { return ::fchmod(file, present.st_mode & kPermissions); }) == 0;
}

bool isSame(const struct stat& left, const struct stat& right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

}  // namespace

Replacement::Replacement(fs::path target) : named_(std::move(target)) {}

Replacement::~Replacement() { removeAside(); }

bool Replacement::reserve(std::uint64_t bytes, std::string& reason) {
    if (!makeAside(reason)) return false;
    if (bytes <= room_) return true;
    if (takeRoom(handle_.get(), bytes)) {
        room_ = bytes;
        return true;
    }
    if (errno == EOPNOTSUPP || errno == ENOSYS) return true;
    reason = withCause("there is no room for it");
    keepRoom();
    return false;
}

bool Replacement::put(std::span<const std::uint8_t> bytes, Sync sync, std::string& reason) {
    if (makeAside(reason) && replace(bytes, sync, reason)) {
        handle_.reset();
        aside_.clear();
        room_ = 0;
        if (sync == Sync::Yes) syncFolder(folder_);
        return true;
    }
    keepRoom();
    return false;
}

bool Replacement::makeAside(std::string& reason) {
    if (isAside()) return true;
    removeAside();
    real_ = followLinks(named_);
    folder_ = real_.has_parent_path() ? real_.parent_path() : fs::path(".");
    std::error_code error;
    fs::create_directories(folder_, error);
    if (error) {
        reason = "its folder cannot be made: " + error.message();
        return false;
    }
    // Another program may remove the file before it is locked: then there is a new one.
    constexpr int kUsualMode = 0666;
    for (int tries = 10; tries > 0; --tries) {
        handle_.reset(untilDone([&] {
            aside_ = folder_ / (std::string(kAsidePrefix) + "XXXXXX" + kAsideEnding);
            return g_mkstemp_full(aside_.data(), O_WRONLY | O_CLOEXEC, kUsualMode);
        }));
        if (!handle_.isOpen()) break;
        // Some file systems have no locks. Nothing is removed there.
        static_cast<void>(untilDone([&] { return ::flock(handle_.get(), LOCK_EX); }));
        if (isAside()) return true;
    }
    reason = withCause("its folder cannot be written");
    return false;
}

bool Replacement::replace(std::span<const std::uint8_t> bytes, Sync sync, std::string& reason) {
    struct stat present {};
    const bool exists = ::stat(real_.c_str(), &present) == 0;
    reason = exists ? findFault(real_, present) : "";
    if (!reason.empty()) return false;
    if (exists && !keepRights(handle_.get(), present)) {
        reason = withCause("its permissions cannot be kept");
    } else if (!write(handle_.get(), bytes, sync)) {
        reason = withCause("cannot be written");
    } else if (untilDone([&] { return std::rename(aside_.c_str(), real_.c_str()); }) != 0) {
        reason = withCause("cannot be replaced");
    } else {
        return true;
    }
    return false;
}

/// True when the hidden file is still where it was made: folders are moved and removed by others.
bool Replacement::isAside() const {
    struct stat held {};
    struct stat found {};
    return handle_.isOpen() && ::fstat(handle_.get(), &held) == 0 && ::lstat(aside_.c_str(), &found) == 0 &&
           isSame(held, found);
}

void Replacement::keepRoom() {
    if (room_ == 0) return removeAside();
    static_cast<void>(untilDone([&] { return ::ftruncate(handle_.get(), static_cast<off_t>(room_)); }));
    static_cast<void>(takeRoom(handle_.get(), room_));
}

void Replacement::removeAside() {
    if (isAside()) ::unlink(aside_.c_str());
    handle_.reset();
    aside_.clear();
    room_ = 0;
}

bool replaceFile(const fs::path& file, std::span<const std::uint8_t> bytes, Sync sync, std::string& reason) {
    return Replacement(file).put(bytes, sync, reason);
}

void removeAbandoned(const fs::path& folder) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(kAsidePrefix) || !name.ends_with(kAsideEnding)) continue;
        const int flags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
        const FileHandle file(untilDone([&] { return ::open(entry->path().c_str(), flags); }));
        // Locked while it is removed, so that nobody who has just made it believes to have it.
        if (file.isOpen() && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0) ::unlink(entry->path().c_str());
    }
}

}  // namespace host
