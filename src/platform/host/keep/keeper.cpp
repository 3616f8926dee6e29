#include "platform/host/keep/keeper.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "platform/host/files/names.h"
#include "platform/host/files/trash.h"
#include "platform/host/keep/recovery.h"
#include "platform/host/screen/area_scaler.h"
#include "platform/host/screen/screen.h"

namespace host {

namespace {

namespace fs = std::filesystem;

void say(const std::string& line) { std::fprintf(stderr, "colour: %s\n", line.c_str()); }

std::string nameOf(const fs::path& file) { return printable(file.filename()); }

bool hasColour(const bitmap_s& bitmap) {
    for (int y = 0; bitmap.depth == 24 && y < bitmap.height; ++y) {
        const std::uint8_t* pixel = bitmapRow(bitmap, y);
        for (int x = 0; x < bitmap.width; ++x, pixel += 3)
            if (pixel[0] != pixel[1] || pixel[0] != pixel[2]) return true;
    }
    return false;
}

Size sizeOf(const Picture& picture) {
    return picture.bitmap == nullptr ? Size{} : Size{picture.bitmap->width, picture.bitmap->height};
}

}  // namespace

Keeper::Keeper(const Storage& storage, const Languages& languages, Text& text, const Screen& screen)
    : storage_(storage),
      languages_(languages),
      text_(text),
      screen_(screen),
      folder_(storage.root() / kRecoveryFolder) {}

void Keeper::recover(const std::string& name) {
    for (const LeftPage& left : recoverPages(storage_, name)) {
        if (!left.error.empty()) {
            say(left.error);
            tell("@NotSaved", {left.error});
        } else if (left.deleted) {
            say(printable(left.picture) + ": was left blank and is in the trash");
            tell("@Deleted", {nameOf(left.picture)});
        } else {
            say(printable(left.picture) + ": brought back after an interruption");
            tell("@Recovered", {nameOf(left.picture)});
        }
    }
}

std::optional<Notice> Keeper::prepare(const std::string& devicePath, std::string& error) {
    saveAgain();
    prepared_.reset();
    auto held = std::make_unique<Held>(devicePath, storage_.resolve(devicePath));
    if (!lock(*held, error)) return Notice{error};
    held->file.before = stateOf(held->file.path);
    held->picture = readPicture(held->file.path, Formats::All, error);
    if (held->picture.bitmap == nullptr)
        return Notice{held->file.before.exists ? languages_.text("@DamagedPicture") : std::string()};
    prepared_ = std::move(held);
    return reserve(*prepared_, error) ? std::nullopt : std::optional(cannotSave(error));
}

std::optional<Notice> Keeper::prepareNew(std::string& error) {
    saveAgain();
    prepared_.reset();
    Held trial("", storage_.pictureFolder() / "picture.bmp");
    if (reserve(trial, error)) return std::nullopt;
    return cannotSave(error);
}

Notice Keeper::takeNotice() { return std::exchange(notice_, {}); }

BitmapPtr Keeper::load(const char* devicePath, std::string& error) {
    letGo();
    const std::string path = devicePath != nullptr ? devicePath : "";
    if (prepared_ != nullptr && prepared_->devicePath == path) {
        open_ = std::move(prepared_);
        if (losesAnything(open_->picture) || sizeOf(open_->picture) != pageSize() || !isPageName(open_->file.path))
            standBeside();
    } else {
        open_ = std::make_unique<Held>(path, storage_.resolve(path));
        if (std::string taken; !lock(*open_, taken)) {
            say(taken);
            standBeside();
        }
        KeptPicture& file = open_->file;
        file.before = stateOf(file.path);
        open_->picture = readPicture(storage_.resolve(path), Formats::Pages, error);
        file.notWhole = file.before.exists && (losesAnything(open_->picture) || isLarger(open_->picture));
        std::string tooLittle;
        if (!reserve(*open_, tooLittle)) say(tooLittle);
    }
    prepared_.reset();
    if (open_->picture.bitmap == nullptr) return nullptr;
    return open_->own ? std::move(open_->picture.bitmap) : shrunk(std::move(open_->picture.bitmap), pageSize());
}

void Keeper::captured(Rect area, const SharedPage& page) {
    drawnText_.reset();
    notedText_.reset();
    const bool first = open_ != nullptr && !std::exchange(open_->seen, true);
    if (page == nullptr) return;
    page_ = area;
    std::erase_if(captures_, [](const auto& each) { return each.expired(); });
    captures_.push_back(page);
    if (open_ == nullptr) return;
    open_->page = page;
    if (first) {
        open_->loaded = page;
    } else {
        note(page);
    }
}

void Keeper::drawn(const bitmap_s* bitmap) {
    for (const auto& each : captures_) {
        const SharedPage page = each.lock();
        if (page == nullptr || page.get() != bitmap) continue;
        drawnText_.reset();
        if (open_ == nullptr || open_->page == page) return;
        open_->page = page;
        note(page);
        return;
    }
}

void Keeper::drawn(DrawnText text) {
    drawnText_.reset();
    if (!text.utf8.empty()) drawnText_ = std::move(text);
}

void Keeper::shown() {
    if (open_ == nullptr || open_->page == nullptr) return;
    // Where a text stands is not finished before it is committed.
    const bool noted = drawnText_ ? notedText_ && drawnText_->isMoved(*notedText_) : !notedText_;
    if (noted) return;
    notedText_ = drawnText_;
    note(drawnText_ ? SharedPage(withText(*open_->page, *drawnText_)) : open_->page);
}

int Keeper::save(const char* devicePath, const bitmap_s* page) {
    if (!isOpen(devicePath)) {
        letGo();
        const std::string path = devicePath != nullptr ? devicePath : "";
        open_ = std::make_unique<Held>(path, storage_.resolve(path));
        open_->file.notWhole = stateOf(open_->file.path).exists;
    }
    if (page == nullptr) {
        failed(open_->page, printable(open_->file.path) + ": there is no page to save");
        return 0;
    }
    std::string error;
    if (!isAsLoaded(*open_, *page) && !store(*open_, *page, error)) {
        const SharedPage copy(rotateBitmap(*page, 0));
        failed(copy != nullptr ? copy : open_->page, error);
        return 0;
    }
    finished(*open_);
    open_.reset();
    return 1;
}

int Keeper::remove(const char* devicePath, Removal why) {
    if (devicePath == nullptr) return -1;
    if (!isOpen(devicePath)) return moveAway(storage_.resolve(devicePath));
    const std::unique_ptr<Held> held = std::move(open_);
    KeptPicture& file = held->file;
    const bool changed = held->page == nullptr || !isAsLoaded(*held, *held->page);
    int result = 0;
    if (why == Removal::Ordered) {
        // What was drawn since the picture was opened comes back with it; where it cannot be saved, at least the rest.
        fs::path aside;
        std::string error;
        const bool drawn = changed && held->page != nullptr && !isWhite(*held->page);
        if (drawn && !file.save(*held->page, held->room.get(), aside, error)) say(error);
        result = moveAway(file.path);
    } else if (changed && !file.isAsLoaded() && stateOf(file.path).exists) {
        tell("@ChangedElsewhere", {nameOf(file.path)});
    } else if (changed) {
        result = moveAway(file.path);
    }
    finished(*held);
    return result;
}

void Keeper::notSaved() {
    if (open_ != nullptr && open_->page != nullptr && open_->page != open_->loaded)
        failed(open_->page, printable(open_->file.path) + ": there is not enough memory to save it");
}

void Keeper::abandon() {
    if (open_ != nullptr) finished(*open_);
    open_.reset();
}

bool Keeper::finish() {
    prepared_.reset();
    letGo();
    saveAgain();
    return !misplaced_ && unsaved_.empty();
}

bool Keeper::lock(Held& held, std::string& error) {
    held.journal.reset();
    std::error_code ignored;
    fs::create_directories(folder_, ignored);
    bool taken = false;
    const std::string name = recoveryName(held.file.path);
    if (hasLeftPages(folder_, name)) recover(name);
    std::optional<FileHandle> lock = lockFile(folder_ / name, taken);
    error = worded("@InUse", {printable(held.file.path)});
    if (taken) return false;
    if (lock && hasLeftPages(folder_, name)) {
        error = printable(held.file.path) + ": an earlier page of it waits in " + printable(folder_);
        return false;
    }
    // A program with a storage of its own has other journals, but the same picture.
    held.pictureLock = FileHandle(::open(held.file.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (held.pictureLock.isOpen() && ::flock(held.pictureLock.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    if (lock) {
        held.journal = std::make_unique<Journal>(folder_ / name, std::move(*lock), held.file.path);
    } else {
        say("what is drawn is not protected against a crash: " + printable(folder_) + " cannot be written");
    }
    return true;
}

bool Keeper::reserve(Held& held, std::string& error) {
    // A page is no larger than the screen; what the formats add to its pixels is less than a row's end for each row.
    constexpr std::uint64_t kHeaders = 4096;
    constexpr std::uint64_t kRowEnd = 8;
    const Framebuffer& pixels = screen_.pixels();
    const auto rows = static_cast<std::uint64_t>(pixels.size().h);
    removeAbandoned(held.file.path.parent_path());
    held.room = std::make_unique<Replacement>(held.file.path);
    std::string reason;
    if (held.room->reserve(rows * (pixels.stride() + kRowEnd) + kHeaders, reason)) return true;
    error = printable(held.file.path.parent_path()) + ": " + reason;
    return false;
}

bool Keeper::losesAnything(const Picture& picture) const {
    if (picture.bitmap == nullptr || !picture.whole) return true;
    return screen_.pixels().format() == PixelFormat::Grey8 && hasColour(*picture.bitmap);
}

bool Keeper::isLarger(const Picture& picture) const {
    return sizeOf(picture).w > pageSize().w || sizeOf(picture).h > pageSize().h;
}

Size Keeper::pageSize() const { return page_.empty() ? screen_.pixels().size() : page_.size(); }

bool Keeper::isAsLoaded(const Held& held, const bitmap_s& page) {
    return held.loaded != nullptr && samePixels(*held.loaded, page);
}

void Keeper::standBeside() {
    const fs::path original = open_->file.path;
    const auto isTaken = [this](const fs::path& name) {
        open_->file = {.path = name};
        std::string taken;
        return isThere(name) || !lock(*open_, taken);
    };
    const fs::path beside = freeName(original, "drawing", isTaken);
    open_->own = false;
    say(printable(original) + ": stays as it is; the drawing is kept as " + nameOf(beside));
    std::string error;
    if (!reserve(*open_, error)) say(error);
}

void Keeper::note(const SharedPage& page) {
    if (page != nullptr && open_->journal != nullptr)
        open_->journal->note(page, page == open_->loaded, open_->file.inWords());
}

bool Keeper::isOpen(const char* devicePath) const {
    return open_ != nullptr && devicePath != nullptr && open_->devicePath == devicePath;
}

bool Keeper::store(Held& held, const bitmap_s& page, std::string& error) {
    fs::path aside;
    if (!held.file.save(page, held.room.get(), aside, error)) return false;
    if (!aside.empty()) {
        say(printable(held.file.path) + ": another picture had this name; it is kept as " + nameOf(aside));
        tell("@KeptAside", {nameOf(held.file.path), nameOf(aside)});
    }
    if (!held.own) tell("@DrawnBeside", {nameOf(storage_.resolve(held.devicePath)), nameOf(held.file.path)});
    return true;
}

void Keeper::finished(Held& held) {
    if (held.journal != nullptr) held.journal->discard();
    held.journal.reset();
}

int Keeper::moveAway(const fs::path& file) {
    if (!isThere(file)) return -1;
    std::string reason;
    const std::optional<Trashed> trashed = moveToTrash(file, storage_.root(), reason);
    if (!trashed) {
        const std::string line = printable(file) + ": cannot be deleted: " + reason;
        say(line);
        tell("@NotDeleted", {line});
        return -1;
    }
    Notice offer;
    if (!trashed->now.empty()) {
        offer.button = languages_.text("@Undo");
        offer.act = [this, trashed = *trashed] {
            std::string error;
            if (restore(trashed, error)) return;
            say(printable(trashed.was) + ": " + error);
            tell("@NotSaved", {printable(trashed.was) + ": " + error});
        };
    }
    tell("@Deleted", {nameOf(file)}, std::move(offer));
    return 0;
}

void Keeper::failed(const SharedPage& page, const std::string& error) {
    say(error);
    if (page == nullptr) return;
    open_->page = page;
    note(page);
    unsaved_.push_back(std::move(open_));
    tellUnsaved(error);
}

void Keeper::saveAgain() {
    std::vector<std::unique_ptr<Held>> waiting = std::exchange(unsaved_, {});
    for (std::unique_ptr<Held>& held : waiting) {
        std::string error;
        const std::string name = nameOf(held->file.path);
        if (store(*held, *held->page, error)) {
            tell("@Saved", {name});
            finished(*held);
            continue;
        }
        misplaced_ = true;
        if (saveElsewhere(*held)) {
            finished(*held);
        } else if (held->journal != nullptr && held->journal->settle()) {
            say(printable(held->file.path) + ": cannot be saved anywhere now; the next start brings it back");
            tell("@KeptForNextStart", {name});
        } else {
            unsaved_.push_back(std::move(held));
            tellUnsaved(error);
        }
    }
}

bool Keeper::saveElsewhere(const Held& held) {
    for (const fs::path& folder : {fs::path(g_get_user_state_dir()) / "colour", fs::path(g_get_home_dir())}) {
        const fs::path wished = folder / held.file.path.filename();
        KeptPicture elsewhere{.path = isPageName(wished) ? unusedName(wished) : freeName(wished, "")};
        fs::path aside;
        std::string error;
        if (!elsewhere.save(*held.page, nullptr, aside, error)) continue;
        say(printable(held.file.path) + ": could not be saved; it is now " + printable(elsewhere.path));
        tell("@SavedElsewhere", {nameOf(held.file.path), printable(elsewhere.path)});
        return true;
    }
    return false;
}

// Pages that the application has changed and let go of unsaved stay in the journal, where there is one.
void Keeper::letGo() {
    if (open_ == nullptr) return;
    if (open_->page == open_->loaded) {
        finished(*open_);
    } else if (open_->journal == nullptr) {
        return failed(open_->page, printable(open_->file.path) + ": has not been saved");
    }
    open_.reset();
}

std::string Keeper::worded(const std::string& key, const std::vector<std::string>& words) const {
    std::string text = languages_.text(key);
    for (std::size_t i = words.size(); i > 0; --i) {
        const std::string mark = "%" + std::to_string(i);
        const std::size_t at = text.find(mark);
        if (at != std::string::npos) text.replace(at, mark.size(), words[i - 1]);
    }
    return text;
}

void Keeper::tell(const std::string& key, const std::vector<std::string>& words, Notice offer) {
    offer.text = (notice_.text.empty() ? "" : notice_.text + " ") + worded(key, words);
    notice_ = std::move(offer);
}

Notice Keeper::cannotSave(const std::string& error) const {
    return {worded("@CannotSave", {error}), languages_.text("@OpenAnyway")};
}

void Keeper::tellUnsaved(const std::string& error) {
    tell("@NotSaved", {error}, {.button = languages_.text("@TryAgain"), .act = [this] { saveAgain(); }});
}

BitmapPtr Keeper::withText(const bitmap_s& page, const DrawnText& text) const {
    Screen screen(page_.size(), screen_.pixels().format());
    screen.draw({0, 0}, page);
    const Rect box{text.box.x - page_.x, text.box.y - page_.y, text.box.w, text.box.h};
    text_.draw(screen, box, text.utf8, text.font, {.colour = text.colour});
    return screen.capture({0, 0, page_.w, page_.h});
}

}  // namespace host
