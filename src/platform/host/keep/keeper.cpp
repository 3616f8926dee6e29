#include "platform/host/keep/keeper.h"

#include <algorithm>
#include <utility>

#include "platform/host/files/names.h"
#include "platform/host/files/trash.h"
#include "platform/host/keep/recovery.h"
#include "platform/host/screen/area_scaler.h"
#include "platform/host/screen/screen.h"

namespace host {

namespace {

namespace fs = std::filesystem;

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
      text_(text),
      screen_(screen),
      folder_(storage.root() / kRecoveryFolder),
      notices_(languages),
      unsaved_(notices_) {}

void Keeper::recover(const std::string& name) {
    for (const LeftPage& left : recoverPages(storage_, name)) {
        if (!left.error.empty()) {
            say(left.error);
            notices_.tell("@NotSaved", {left.error});
        } else if (left.deleted) {
            say(printable(left.picture) + ": was left blank and is in the trash");
            notices_.tell("@Deleted", {nameOf(left.picture)});
        } else {
            say(printable(left.picture) + ": brought back after an interruption");
            notices_.tell("@Recovered", {nameOf(left.picture)});
        }
    }
}

std::optional<Notice> Keeper::prepare(const std::string& devicePath, std::string& error) {
    unsaved_.saveAgain();
    prepared_.reset();
    auto held = std::make_unique<HeldPicture>(devicePath, storage_.resolve(devicePath));
    if (!take(*held, error)) return Notice{error};
    held->file.before = stateOf(held->file.path);
    held->picture = readPicture(held->file.path, Formats::All, error);
    if (held->picture.bitmap == nullptr)
        return Notice{held->file.before.exists ? notices_.worded("@DamagedPicture") : std::string()};
    prepared_ = std::move(held);
    return reserve(*prepared_, error) ? std::nullopt : std::optional(cannotSave(error));
}

std::optional<Notice> Keeper::prepareNew(std::string& error) {
    unsaved_.saveAgain();
    prepared_.reset();
    HeldPicture trial("", storage_.pictureFolder() / "picture.bmp");
    if (reserve(trial, error)) return std::nullopt;
    return cannotSave(error);
}

Notice Keeper::takeNotice() { return notices_.take(); }

BitmapPtr Keeper::load(const char* devicePath, std::string& error) {
    letGo();
    const std::string path = devicePath != nullptr ? devicePath : "";
    if (prepared_ != nullptr && prepared_->devicePath == path) {
        open_ = std::move(prepared_);
        if (losesAnything(open_->picture) || sizeOf(open_->picture) != pageSize() || !isPageName(open_->file.path))
            standBeside();
    } else {
        open_ = std::make_unique<HeldPicture>(path, storage_.resolve(path));
        if (std::string taken; !take(*open_, taken)) {
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
        open_->note(page);
    }
}

void Keeper::drawn(const bitmap_s* bitmap) {
    for (const auto& each : captures_) {
        const SharedPage page = each.lock();
        if (page == nullptr || page.get() != bitmap) continue;
        drawnText_.reset();
        if (open_ == nullptr || open_->page == page) return;
        open_->page = page;
        open_->note(page);
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
    open_->note(drawnText_ ? SharedPage(withText(*open_->page, *drawnText_)) : open_->page);
}

int Keeper::save(const char* devicePath, const bitmap_s* page) {
    if (!isOpen(devicePath)) {
        letGo();
        const std::string path = devicePath != nullptr ? devicePath : "";
        open_ = std::make_unique<HeldPicture>(path, storage_.resolve(path));
        open_->file.notWhole = stateOf(open_->file.path).exists;
    }
    if (page == nullptr) {
        failed(open_->page, printable(open_->file.path) + ": there is no page to save");
        return 0;
    }
    std::string error;
    if (!open_->isAsLoaded(*page) && !open_->save(*page, notices_, error)) {
        const SharedPage copy(rotateBitmap(*page, 0));
        failed(copy != nullptr ? copy : open_->page, error);
        return 0;
    }
    open_->finish();
    open_.reset();
    return 1;
}

int Keeper::remove(const char* devicePath, Removal why) {
    if (devicePath == nullptr) return -1;
    if (!isOpen(devicePath)) return moveAway(storage_.resolve(devicePath));
    const std::unique_ptr<HeldPicture> held = std::move(open_);
    KeptPicture& file = held->file;
    const bool changed = held->page == nullptr || !held->isAsLoaded(*held->page);
    int result = 0;
    if (why == Removal::Ordered) {
        // What was drawn since the picture was opened comes back with it; where it cannot be saved, at least the rest.
        fs::path aside;
        std::string error;
        const bool drawn = changed && held->page != nullptr && !isWhite(*held->page);
        if (drawn && !file.save(*held->page, held->room.get(), aside, error)) say(error);
        result = moveAway(file.path);
    } else if (changed && !file.isAsLoaded() && stateOf(file.path).exists) {
        notices_.tell("@ChangedElsewhere", {nameOf(file.path)});
    } else if (changed) {
        result = moveAway(file.path);
    }
    held->finish();
    return result;
}

void Keeper::notSaved() {
    if (open_ != nullptr && open_->page != nullptr && open_->page != open_->loaded)
        failed(open_->page, printable(open_->file.path) + ": there is not enough memory to save it");
}

void Keeper::abandon() {
    if (open_ != nullptr) open_->finish();
    open_.reset();
}

bool Keeper::finish() {
    prepared_.reset();
    letGo();
    unsaved_.saveAgain();
    return unsaved_.allInPlace();
}

bool Keeper::take(HeldPicture& held, std::string& error) {
    const std::string name = recoveryName(held.file.path);
    if (hasLeftPages(folder_, name)) recover(name);
    switch (held.take(folder_)) {
        case HeldPicture::Owner::Other:
            error = notices_.worded("@InUse", {printable(held.file.path)});
            return false;
        case HeldPicture::Owner::EarlierPage:
            error = printable(held.file.path) + ": an earlier page of it waits in " + printable(folder_);
            return false;
        case HeldPicture::Owner::This:
            break;
    }
    return true;
}

bool Keeper::reserve(HeldPicture& held, std::string& error) {
    // A page is no larger than the screen; what the formats add to its pixels is less than a row's end for each row.
    constexpr std::uint64_t kHeaders = 4096;
    constexpr std::uint64_t kRowEnd = 8;
    const Framebuffer& pixels = screen_.pixels();
    return held.reserve(static_cast<std::uint64_t>(pixels.size().h) * (pixels.stride() + kRowEnd) + kHeaders, error);
}

bool Keeper::losesAnything(const Picture& picture) const {
    if (picture.bitmap == nullptr || !picture.whole) return true;
    return screen_.pixels().format() == PixelFormat::Grey8 && hasColour(*picture.bitmap);
}

bool Keeper::isLarger(const Picture& picture) const {
    return sizeOf(picture).w > pageSize().w || sizeOf(picture).h > pageSize().h;
}

Size Keeper::pageSize() const { return page_.empty() ? screen_.pixels().size() : page_.size(); }

void Keeper::standBeside() {
    const fs::path original = open_->file.path;
    const auto isTaken = [this](const fs::path& name) {
        open_->file = {.path = name};
        std::string taken;
        return isThere(name) || !take(*open_, taken);
    };
    const fs::path beside = freeName(original, "drawing", isTaken);
    open_->own = false;
    say(printable(original) + ": stays as it is; the drawing is kept as " + nameOf(beside));
    std::string error;
    if (!reserve(*open_, error)) say(error);
}

bool Keeper::isOpen(const char* devicePath) const {
    return open_ != nullptr && devicePath != nullptr && open_->devicePath == devicePath;
}

int Keeper::moveAway(const fs::path& file) {
    if (!isThere(file)) return -1;
    std::string reason;
    const std::optional<Trashed> trashed = moveToTrash(file, storage_.root(), reason);
    if (!trashed) {
        const std::string line = printable(file) + ": cannot be deleted: " + reason;
        say(line);
        notices_.tell("@NotDeleted", {line});
        return -1;
    }
    Notice offer;
    if (!trashed->now.empty()) {
        offer.button = "@Undo";
        offer.act = [this, trashed = *trashed] {
            std::string error;
            if (restore(trashed, error)) return;
            say(printable(trashed.was) + ": " + error);
            notices_.tell("@NotSaved", {printable(trashed.was) + ": " + error});
        };
    }
    notices_.tell("@Deleted", {nameOf(file)}, std::move(offer));
    return 0;
}

void Keeper::failed(const SharedPage& page, const std::string& error) {
    say(error);
    if (page == nullptr) return;
    open_->page = page;
    open_->note(page);
    unsaved_.keep(std::move(open_), error);
}

// Pages that the application has changed and let go of unsaved stay in the journal, where there is one.
void Keeper::letGo() {
    if (open_ == nullptr) return;
    if (open_->page == open_->loaded) {
        open_->finish();
    } else if (open_->journal == nullptr) {
        return failed(open_->page, printable(open_->file.path) + ": has not been saved");
    }
    open_.reset();
}

Notice Keeper::cannotSave(const std::string& error) const {
    return {notices_.worded("@CannotSave", {error}), notices_.worded("@OpenAnyway")};
}

BitmapPtr Keeper::withText(const bitmap_s& page, const DrawnText& text) const {
    Screen screen(page_.size(), screen_.pixels().format());
    screen.draw({0, 0}, page);
    const Rect box{text.box.x - page_.x, text.box.y - page_.y, text.box.w, text.box.h};
    text_.draw(screen, box, text.utf8, text.font, {.colour = text.colour});
    return screen.capture({0, 0, page_.w, page_.h});
}

}  // namespace host
