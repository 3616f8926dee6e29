#include "platform/host/keep/recovery.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include "platform/host/files/names.h"
#include "platform/host/files/picture_file.h"
#include "platform/host/files/replaced_file.h"
#include "platform/host/files/trash.h"
#include "platform/host/keep/journal.h"
#include "platform/host/keep/kept_picture.h"

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr const char* kLogEndings[] = {".0", ".1"};

/// The newest page of that name; without one, what is known about it.
LoggedPage lastPage(const fs::path& stem) {
    LoggedPage last;
    for (const char* ending : kLogEndings) {
        LoggedPage logged = readPageLog(stem.string() + ending);
        // The one that cannot be read may be the newer one.
        if (!logged.error.empty()) return logged;
        if (logged.page != nullptr && (last.page == nullptr || logged.number > last.number)) last = std::move(logged);
    }
    return last;
}

/// The path that a journal's first file holds.
fs::path pictureOf(const FileHandle& lock) {
    std::array<char, PATH_MAX> path{};
    const ssize_t count = untilDone([&] { return ::pread(lock.get(), path.data(), path.size(), 0); });
    return std::string(path.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
}

bool holds(const fs::path& file, const bitmap_s& page) {
    std::string ignored;
    const BitmapPtr present = loadPicture(file, ignored);
    return present != nullptr && samePixels(*present, page);
}

/// What has been done for the page; nothing when nothing had to be.
std::optional<LeftPage> bringBack(KeptPicture picture, const bitmap_s& page, const Storage& storage) {
    std::string reason;
    const FileState now = stateOf(picture.path);
    // It may have been saved already, with only the journal still there.
    if (now.exists && holds(picture.path, page)) return std::nullopt;
    if (isWhite(page)) {
        // As "back": what was never on the page does not go with it.
        if (!now.exists || picture.notWhole || now != picture.before) return std::nullopt;
        if (moveToTrash(picture.path, storage.root(), reason)) return LeftPage{picture.path, true};
        return LeftPage{picture.path, false, printable(picture.path) + ": " + reason};
    }
    if (now.exists && now != picture.before) picture = {.path = freeName(picture.path, "recovered")};
    std::error_code ignored;
    // A disk that is not plugged in: its folder made anew would lie on another one, and be hidden when it comes back.
    if (!fs::exists(picture.path.parent_path(), ignored))
        picture = {.path = unusedName(storage.pictureFolder() / picture.path.filename())};
    fs::path aside;
    static_cast<void>(picture.save(page, nullptr, aside, reason));
    return LeftPage{picture.path, false, reason};
}

}  // namespace

bool hasLeftPages(const fs::path& folder, const std::string& name) {
    for (const char* ending : kLogEndings) {
        std::error_code ignored;
        if (fs::exists(folder / (name + ending), ignored)) return true;
    }
    return false;
}

std::vector<LeftPage> recoverPages(const Storage& storage, const std::string& name) {
    const fs::path folder = storage.root() / kRecoveryFolder;
    std::set<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        names.insert(entry->path().stem().string());
    std::vector<LeftPage> left;
    for (const std::string& each : names) {
        if (!name.empty() && each != name) continue;
        bool taken = false;
        const std::optional<FileHandle> lock = lockFile(folder / each, taken);
        if (!lock) continue;
        removeAbandoned(pictureOf(*lock).parent_path());
        const LoggedPage last = lastPage(folder / each);
        if (!last.error.empty()) {
            left.push_back({folder / each, false, printable(folder / each) + ": cannot be read: " + last.error});
            continue;
        }
        const std::optional<KeptPicture> picture = KeptPicture::fromWords(last.about);
        if (last.page != nullptr && !picture) {
            left.push_back({folder / each, false, printable(folder / each) + ": does not say whose page it holds"});
            continue;
        }
        if (last.page != nullptr && !last.asLoaded) {
            const std::optional<LeftPage> done = bringBack(*picture, *last.page, storage);
            if (done) left.push_back(*done);
            if (done && !done->error.empty()) continue;
        }
        for (const char* ending : kLogEndings) ::unlink((folder / (each + ending)).c_str());
        ::unlink((folder / each).c_str());
    }
    return left;
}

}  // namespace host
