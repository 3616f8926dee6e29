#include "platform/host/keep/held_picture.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/host/keep/recovery.h"

namespace host {

namespace fs = std::filesystem;

HeldPicture::HeldPicture(std::string path, const fs::path& place) : devicePath(std::move(path)) {
    file.path = fs::absolute(place);
}

HeldPicture::Owner HeldPicture::take(const fs::path& recoveryFolder) {
    journal.reset();
    std::error_code ignored;
    fs::create_directories(recoveryFolder, ignored);
    bool taken = false;
    const std::string name = recoveryName(file.path);
    std::optional<FileHandle> lock = lockFile(recoveryFolder / name, taken);
    if (taken) return Owner::Other;
    if (lock && hasLeftPages(recoveryFolder, name)) return Owner::EarlierPage;
    // A program with a storage of its own has other journals, but the same picture.
    pictureLock = FileHandle(::open(file.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (pictureLock.isOpen() && ::flock(pictureLock.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return Owner::Other;
    if (lock) {
        journal = std::make_unique<Journal>(recoveryFolder / name, std::move(*lock), file.path);
    } else {
        say("what is drawn is not protected against a crash: " + printable(recoveryFolder) + " cannot be written");
    }
    return Owner::This;
}

bool HeldPicture::reserve(std::uint64_t bytes, std::string& error) {
    removeAbandoned(file.path.parent_path());
    room = std::make_unique<Replacement>(file.path);
    std::string reason;
    if (room->reserve(bytes, reason)) return true;
    error = printable(file.path.parent_path()) + ": " + reason;
    return false;
}

void HeldPicture::note(const SharedPage& shown) {
    if (shown != nullptr && journal != nullptr) journal->note(shown, shown == loaded, file.inWords());
}

bool HeldPicture::isAsLoaded(const bitmap_s& shown) const { return loaded != nullptr && samePixels(*loaded, shown); }

bool HeldPicture::save(const bitmap_s& shown, Notices& notices, std::string& error) {
    fs::path aside;
    if (!file.save(shown, room.get(), aside, error)) return false;
    if (!aside.empty()) {
        say(printable(file.path) + ": another picture had this name; it is kept as " + nameOf(aside));
        notices.tell("@KeptAside", {nameOf(file.path), nameOf(aside)});
    }
    if (!own) notices.tell("@DrawnBeside", {nameOf(devicePath), nameOf(file.path)});
    return true;
}

void HeldPicture::finish() {
    if (journal != nullptr) journal->discard();
    journal.reset();
}

}  // namespace host
