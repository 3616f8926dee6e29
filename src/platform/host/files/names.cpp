#include "platform/host/files/names.h"

#include <algorithm>
#include <climits>
#include <system_error>

#include "platform/host/files/picture_file.h"

namespace host {

namespace {

namespace fs = std::filesystem;

/// The first free one of "STEM (NOTE)ENDING", "STEM (NOTE 2)ENDING", "STEM (NOTE 3)ENDING"; without a note those with a
/// number alone.
fs::path firstFree(const fs::path& wanted, const std::string& note, const std::string& ending,
                   const std::function<bool(const fs::path&)>& isTaken) {
    for (int number = note.empty() ? 2 : 1;; ++number) {
        const std::string count = number == 1 ? "" : std::to_string(number);
        const std::string mark = note.empty() || count.empty() ? note + count : note + " " + count;
        const std::string tail = " (" + mark + ")" + ending;
        const std::string stem = wanted.stem().string();
        const auto isInside = [&stem](std::size_t at) { return at < stem.size() && (stem[at] & 0xC0) == 0x80; };
        std::size_t length = std::min(stem.size(), NAME_MAX - std::min<std::size_t>(tail.size(), NAME_MAX));
        while (length > 0 && isInside(length)) --length;
        const fs::path file = wanted.parent_path() / (stem.substr(0, length) + tail);
        if (!isTaken(file)) return file;
    }
}

}  // namespace

bool isThere(const fs::path& file) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(file, ignored));
}

fs::path freeName(const fs::path& wanted, const std::string& note,
                  const std::function<bool(const fs::path&)>& isTaken) {
    return firstFree(wanted, note, isPageName(wanted) ? wanted.extension().string() : ".bmp", isTaken);
}

fs::path unusedName(const fs::path& wanted) {
    return isThere(wanted) ? firstFree(wanted, "", wanted.extension().string(), isThere) : wanted;
}

}  // namespace host
