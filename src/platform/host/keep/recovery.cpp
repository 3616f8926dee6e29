#include "platform/host/keep/recovery.h"

#include <unistd.h>

#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include "platform/host/files/names.h"
#include "platform/host/files/picture_file.h"
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
        if (logged.page != nullptr && (last.page == nullptr || logged.number > last.number)) last = std::move(logged);
    }
    return last;
}

bool holds(const fs::path& file, const bitmap_s& page) {
    std::string ignored;
    const BitmapPtr present = loadPicture(file, ignored);
    return present != nullptr && samePixels(*present, page);
}

/// What has been done for the page; nothing when nothing had to be.
std::optional<LeftPage> bringBack(KeptPicture picture, const bitmap_s& page, const fs::path& storageRoot) {
    std::string reason;
    const FileState now = stateOf(picture.path);
    // It may have been saved already, with only the journal still there.
    if (now.exists && holds(picture.path, page)) return std::nullopt;
    if (isWhite(page)) {
        if (!now.exists || now != picture.before) return std::nullopt;
        if (moveToTrash(picture.path, storageRoot, reason)) return LeftPage{picture.path};
        return LeftPage{picture.path, printable(picture.path) + ": " + reason};
    }
    if (now.exists && now != picture.before) picture = {.path = freeName(picture.path, "recovered")};
    fs::path aside;
    static_cast<void>(picture.save(page, nullptr, aside, reason));
    return LeftPage{picture.path, reason};
}

}  // namespace

bool hasLeftPages(const fs::path& folder, const std::string& name) {
    for (const char* ending : kLogEndings) {
        std::error_code ignored;
        if (fs::exists(folder / (name + ending), ignored)) return true;
    }
    return false;
}

std::vector<LeftPage> recoverPages(const fs::path& folder, const fs::path& storageRoot, const std::string& name) {
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
        const LoggedPage last = lastPage(folder / each);
        const std::optional<KeptPicture> picture = KeptPicture::fromWords(last.about);
        if (last.page != nullptr && !picture) {
            left.push_back({folder / each, printable(folder / each) + ": does not say whose page it holds"});
            continue;
        }
        if (last.page != nullptr && !last.asLoaded) {
            const std::optional<LeftPage> done = bringBack(*picture, *last.page, storageRoot);
            if (done) left.push_back(*done);
            if (done && !done->error.empty()) continue;
        }
        for (const char* ending : kLogEndings) ::unlink((folder / (each + ending)).c_str());
        ::unlink((folder / each).c_str());
    }
    return left;
}

}  // namespace host
