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
    if (now.exists && (notWhole || now != before)) {
        aside = freeName(path, notWhole ? "original" : "changed meanwhile");
        // A second name, so that the first one never stands empty; not every file system knows that.
        if (::link(path.c_str(), aside.c_str()) != 0 && std::rename(path.c_str(), aside.c_str()) != 0) {
            error = printable(path) + ": cannot be kept aside: " + std::strerror(errno);
            return false;
        }
    }
    if (!(room != nullptr ? savePicture(*room, page, error) : savePicture(path, page, error))) {
        if (!aside.empty()) static_cast<void>(std::rename(aside.c_str(), path.c_str()));
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
