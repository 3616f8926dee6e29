#include "platform/host/keep/kept_picture.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <sstream>

#include "platform/host/files/names.h"
#include "platform/host/files/picture_file.h"

namespace host {

namespace {

namespace fs = std::filesystem;

}  // namespace

FileState stateOf(const fs::path& file) {
    struct stat state {};
    // What cannot be looked at may be there all the same.
    if (::stat(file.c_str(), &state) != 0) return {.exists = errno != ENOENT && errno != ENOTDIR};
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    return {true, static_cast<std::uint64_t>(state.st_size),
            state.st_mtim.tv_sec * kNanoseconds + state.st_mtim.tv_nsec};
}

bool KeptPicture::save(const bitmap_s& page, Replacement* room, fs::path& aside, std::string& error) {
    aside.clear();
    const FileState now = stateOf(path);
    fs::path real;
    bool linked = false;
    if (now.exists && (notWhole || now != before)) {
        // The file itself, behind all links: that is what the save replaces.
        std::error_code unknown;
        real = fs::canonical(path, unknown);
        aside = freeName(unknown ? path : real, notWhole ? "original" : "changed meanwhile");
        // A second name, so that the first one never stands empty; not every file system knows that.
        linked = !unknown && ::link(real.c_str(), aside.c_str()) == 0;
        if (!linked && (unknown || std::rename(real.c_str(), aside.c_str()) != 0)) {
            error = printable(path) + ": cannot be kept aside: " + std::strerror(errno);
            return false;
        }
    }
    if (!(room != nullptr ? savePicture(*room, page, error) : savePicture(path, page, error))) {
        // Renaming one of two names of a file onto the other would do nothing.
        if (linked) {
            ::unlink(aside.c_str());
        } else if (!aside.empty()) {
            static_cast<void>(std::rename(aside.c_str(), real.c_str()));
        }
        return false;
    }
    before = stateOf(path);
    notWhole = false;
    return true;
}

std::string KeptPicture::inWords() const {
    std::ostringstream words;
    words << before.exists << ' ' << before.bytes << ' ' << before.changed << ' ' << notWhole << ' ' << path.string();
    return words.str();
}

std::optional<KeptPicture> KeptPicture::fromWords(const std::string& words) {
    std::istringstream from(words);
    KeptPicture picture;
    if (!(from >> picture.before.exists >> picture.before.bytes >> picture.before.changed >> picture.notWhole))
        return std::nullopt;
    from.ignore();
    picture.path = std::string(std::istreambuf_iterator<char>(from), {});
    if (!picture.path.is_absolute()) return std::nullopt;
    return picture;
}

}  // namespace host
