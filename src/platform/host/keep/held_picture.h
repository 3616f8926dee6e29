#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/host/files/picture_file.h"
#include "platform/host/files/replaced_file.h"
#include "platform/host/keep/journal.h"
#include "platform/host/keep/kept_picture.h"
#include "platform/host/keep/notices.h"

namespace host {

/// A picture in this program's hands, from its opening until its page is safe.
struct HeldPicture {
    /// Whose it is: this program's; another one's; or nobody's, since an earlier page of it waits to be saved.
    enum class Owner { This, Other, EarlierPage };

    HeldPicture(std::string path, const std::filesystem::path& place);

    /// Takes the picture for this program, with a journal in that folder. Where no journal can be kept there, that is
    /// told in one line on standard error.
    [[nodiscard]] Owner take(const std::filesystem::path& recoveryFolder);
    /// Takes room for its save. False, with one line in `error`, where there is too little, or no folder to write into.
    [[nodiscard]] bool reserve(std::uint64_t bytes, std::string& error);

    /// The page is this one now.
    void note(const SharedPage& shown);
    [[nodiscard]] bool isAsLoaded(const bitmap_s& shown) const;
    /// Saves a page in the picture's place; tells what else has become of files. False, with one line in `error`, on
    /// failure.
    [[nodiscard]] bool save(const bitmap_s& shown, Notices& notices, std::string& error);
    /// Its page is safe, or to be forgotten: the journal goes.
    void finish();

    std::string devicePath;
    KeptPicture file;
    bool own = true;  ///< false: the drawing stands beside the picture that was opened
    Picture picture;
    FileHandle pictureLock;
    std::unique_ptr<Journal> journal;  ///< null where none can be kept
    std::unique_ptr<Replacement> room;
    bool seen = false;  ///< the first capture has come
    SharedPage loaded;  ///< what it was; null where there was no memory for it
    SharedPage page;
};

}  // namespace host
