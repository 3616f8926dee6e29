#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/files/languages.h"
#include "platform/host/files/storage.h"
#include "platform/host/keep/held_picture.h"
#include "platform/host/keep/notices.h"
#include "platform/host/keep/unsaved_pages.h"
#include "platform/host/screen/screen.h"
#include "platform/host/screen/text.h"

namespace host {

/// Why a picture is to go: its page is blank, or a person wants it gone.
enum class Removal { BlankPage, Ordered };

/// A text as the application has drawn it, in its own place on the screen.
struct DrawnText {
    Rect box;
    std::string utf8;
    font_s font;
    Rgb colour = kBlack;

    /// True for the same text in another place: a box on its way.
    [[nodiscard]] bool isMoved(const DrawnText& other) const {
        return utf8 == other.utf8 && font == other.font && colour == other.colour;
    }
};

/// Stands between the application and its pictures, so that nothing drawn is ever lost. It sees which picture is
/// loaded, each page that the application captures or draws back, and what it saves or deletes; from this it knows the
/// page at every moment and
///
/// - writes each finished change into the picture's journal, and brings back at the start what a crash has left;
/// - leaves a picture alone whose page is as it was loaded;
/// - puts the drawing beside a picture that a page cannot hold whole;
/// - keeps the page when it cannot be saved, and what was deleted.
///
/// Owned by the Toolkit.
class Keeper {
public:
    Keeper(const Storage& storage, const Languages& languages, Text& text, const Screen& screen);
    Keeper(const Keeper&) = delete;
    Keeper& operator=(const Keeper&) = delete;

    // What the explorer asks.

    /// Brings the pages that a crash has left back to their pictures: those of that recovery name, or all.
    void recover(const std::string& name = {});

    /// A person wants to open this picture: reads it and takes it for this program. What speaks against it is told in
    /// one line in `error`, and in the notice; where that has a button, the person may open the picture all the same.
    [[nodiscard]] std::optional<Notice> prepare(const std::string& devicePath, std::string& error);
    /// As above, for a picture that is not there yet.
    [[nodiscard]] std::optional<Notice> prepareNew(std::string& error);

    /// What the person has not been told yet; without text when there is nothing.
    [[nodiscard]] Notice takeNotice();

    // What the application does.

    /// The picture at the path, no larger than a page; null when there is none or it cannot be read, with one line in
    /// `error`. From now on it is the open one.
    [[nodiscard]] BitmapPtr load(const char* devicePath, std::string& error);
    /// A page that it has captured from the screen; null when there was no memory for it.
    void captured(Rect area, const SharedPage& page);
    /// A bitmap that it has drawn: one that was captured is the page again.
    void drawn(const bitmap_s* bitmap);
    void drawn(DrawnText text);
    /// It has refreshed what it drew: what shows now is meant to be seen.
    void shown();
    /// 1 when the page is safe, which it also is where nothing had to be written; else 0.
    int save(const char* devicePath, const bitmap_s* page);
    /// 0 when the picture is gone, or stays since it is not the page's to take away; else -1. A page left blank takes
    /// its picture away only where that is the one it was made from; a person's order does in any case.
    int remove(const char* devicePath, Removal why);
    /// It has given up saving, since the page could not be captured.
    void notSaved();

    // The end.

    /// Forgets the open picture's page: its session has ended without saving it, as scripts may.
    void abandon();
    /// Saves what could not be saved, wherever that is possible. False when a page is not where it belongs.
    [[nodiscard]] bool finish();

private:
    /// Takes the picture for this program. False, with one line in `error`, where that cannot be.
    [[nodiscard]] bool take(HeldPicture& held, std::string& error);
    [[nodiscard]] bool reserve(HeldPicture& held, std::string& error);
    /// Makes the open picture one of its own, beside the one that it was made from.
    void standBeside();
    /// True when a page cannot hold all of it, whatever its size.
    [[nodiscard]] bool losesAnything(const Picture& picture) const;
    [[nodiscard]] bool isLarger(const Picture& picture) const;
    [[nodiscard]] Size pageSize() const;
    [[nodiscard]] bool isOpen(const char* devicePath) const;
    void letGo();
    [[nodiscard]] int moveAway(const std::filesystem::path& file);
    void failed(const SharedPage& page, const std::string& error);
    [[nodiscard]] Notice cannotSave(const std::string& error) const;
    [[nodiscard]] BitmapPtr withText(const bitmap_s& page, const DrawnText& text) const;

    const Storage& storage_;
    Text& text_;
    const Screen& screen_;
    std::filesystem::path folder_;  ///< of the journals
    Rect page_;                     ///< of the screen; empty until the first capture

    Notices notices_;
    UnsavedPages unsaved_;
    std::unique_ptr<HeldPicture> prepared_;
    std::unique_ptr<HeldPicture> open_;
    std::vector<std::weak_ptr<const bitmap_s>> captures_;
    std::optional<DrawnText> drawnText_;
    std::optional<DrawnText> notedText_;
};

}  // namespace host
