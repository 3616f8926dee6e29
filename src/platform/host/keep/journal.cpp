#include "platform/host/keep/journal.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include "platform/host/files/picture_file.h"

namespace host {

namespace {

namespace fs = std::filesystem;

/// So much of what was drawn may be missing after a power cut, and the time that the disk takes.
constexpr std::chrono::seconds kSyncInterval{1};

}  // namespace

std::optional<FileHandle> lockFile(const fs::path& file, bool& taken) {
    for (;;) {
        FileHandle handle(untilDone([&] { return ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600); }));
        struct stat state {};
        const bool locked = handle.isOpen() && untilDone([&] { return ::flock(handle.get(), LOCK_EX | LOCK_NB); }) == 0;
        taken = handle.isOpen() && !locked && errno == EWOULDBLOCK;
        if (!locked || ::fstat(handle.get(), &state) != 0) return std::nullopt;
        // Whoever had the lock may have removed the file before letting go of it.
        if (state.st_nlink > 0) return handle;
    }
}

std::string recoveryName(const fs::path& picture) {
    std::error_code ignored;
    const std::string path = fs::weakly_canonical(picture, ignored).string();
    const std::unique_ptr<char, void (*)(void*)> sum(g_compute_checksum_for_string(G_CHECKSUM_SHA256, path.c_str(), -1),
                                                     g_free);
    constexpr std::size_t kEnough = 24;
    return std::string(sum.get()).substr(0, kEnough);
}

Journal::Journal(fs::path file, FileHandle lock, const fs::path& picture)
    : file_(std::move(file)), lock_(std::move(lock)) {
    const std::string path = picture.string();
    const bool named = writeAt(lock_.get(), 0, {reinterpret_cast<const std::uint8_t*>(path.data()), path.size()}) &&
                       ::ftruncate(lock_.get(), static_cast<off_t>(path.size())) == 0;
    // Without a name only what lies beside the picture is not cleared away.
    static_cast<void>(named);
}

Journal::~Journal() {
    const bool empty = !writer_.joinable();
    end();
    if (empty) discard();
}

void Journal::note(SharedPage page, bool asLoaded, std::string about) {
    {
        const std::lock_guard guard(mutex_);
        next_ = {std::move(page), asLoaded, std::move(about)};
    }
    changed_.notify_all();
    if (writer_.joinable()) return;
    try {
        writer_ = std::thread([this] { write(); });
        syncer_ = std::thread([this] { sync(); });
    } catch (const std::system_error& error) {
        tellUnprotected(error.what());
    }
}

bool Journal::settle() {
    std::unique_lock guard(mutex_);
    changed_.wait(guard, [this] { return !next_ && !writing_; });
    return kept_ && writer_.joinable();
}

void Journal::discard() {
    {
        const std::lock_guard guard(mutex_);
        next_.reset();
        unsynced_.reset();
        outdated_.reset();  // the writer may wait for it
    }
    end();
    for (const std::uint32_t number : {0U, 1U}) ::unlink(logFile(number).c_str());
    ::unlink(file_.c_str());
    lock_.reset();
}

void Journal::end() {
    {
        const std::lock_guard guard(mutex_);
        ended_ = true;
    }
    changed_.notify_all();
    if (writer_.joinable()) writer_.join();
    if (syncer_.joinable()) syncer_.join();
    // The syncer may have ended before the writer's last page.
    if (unsynced_.isOpen()) static_cast<void>(untilDone([&] { return ::fdatasync(unsynced_.get()); }));
}

void Journal::write() {
    std::unique_lock guard(mutex_);
    for (;;) {
        changed_.wait(guard, [this] { return next_ || ended_; });
        if (!next_) return;
        const Page page = *std::exchange(next_, std::nullopt);
        writing_ = true;
        guard.unlock();
        const bool kept = keep(page);
        guard.lock();
        writing_ = false;
        kept_ = kept;
        if (kept && !unsynced_.isOpen()) unsynced_ = log_->duplicate();
        changed_.notify_all();
    }
}

void Journal::sync() {
    std::unique_lock guard(mutex_);
    for (;;) {
        changed_.wait(guard, [this] { return unsynced_.isOpen() || ended_; });
        if (!unsynced_.isOpen()) break;
        changed_.wait_for(guard, kSyncInterval, [this] { return ended_ || hurry_; });
        const FileHandle log = std::exchange(unsynced_, FileHandle());
        const std::optional<fs::path> outdated = outdated_;
        guard.unlock();
        static_cast<void>(untilDone([&] { return ::fdatasync(log.get()); }));
        if (outdated) ::unlink(outdated->c_str());
        guard.lock();
        // Only the one that was removed: meanwhile the writer may have begun another log.
        if (outdated) outdated_.reset();
        changed_.notify_all();
    }
    // Nobody waits for the disk any more.
    outdated_.reset();
    changed_.notify_all();
}

bool Journal::keep(const Page& page) {
    std::string reason;
    try {
        const std::uint64_t most = firstSize_ + pixelBytes(*page.pixels) / 2;
        if (log_ && log_->isOpen() && log_->add(page.pixels, page.asLoaded, most, reason)) return true;
        if (beginLog(page, reason)) return true;
    } catch (const std::bad_alloc&) {
        reason = "there is not enough memory";
    }
    tellUnprotected(reason);
    return false;
}

void Journal::tellUnprotected(const std::string& reason) {
    if (!told_.exchange(true))
        std::fprintf(stderr, "colour: the drawing is not protected against a crash: %s: %s\n", printable(file_).c_str(),
                     reason.c_str());
}

bool Journal::beginLog(const Page& page, std::string& reason) {
    {
        // The new one takes the place of the one before the present.
        std::unique_lock guard(mutex_);
        hurry_ = outdated_.has_value();
        changed_.notify_all();
        changed_.wait(guard, [this] { return !outdated_; });
        hurry_ = false;
    }
    constexpr auto kUnlimited = std::numeric_limits<std::uint64_t>::max();
    const fs::path file = logFile(number_ + 1);
    PageLog log(file, number_ + 1, page.about, *page.pixels, reason);
    if (!log.isOpen() || !log.add(page.pixels, page.asLoaded, kUnlimited, reason)) {
        ::unlink(file.c_str());
        return false;
    }
    ++number_;
    firstSize_ = log.size();
    const std::lock_guard guard(mutex_);
    // The log before holds what is safe on the disk until this one is.
    if (log_) outdated_ = logFile(number_ - 1);
    unsynced_ = log.duplicate();
    log_.emplace(std::move(log));
    return true;
}

fs::path Journal::logFile(std::uint32_t number) const {
    fs::path file = file_;
    file += number % 2 == 0 ? ".0" : ".1";
    return file;
}

}  // namespace host
