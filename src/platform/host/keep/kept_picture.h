#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/host/files/replaced_file.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

/// A file as it was at one moment: two that are equal mean that nobody has written it in between.
struct FileState {
    bool exists = false;
    std::uint64_t bytes = 0;
    std::int64_t changed = 0;  ///< nanoseconds since the epoch

    bool operator==(const FileState&) const = default;
};

[[nodiscard]] FileState stateOf(const std::filesystem::path& file);

/// Where a page belongs, and what may not be lost there: what stands at the path and is not what the page was made from
/// is kept beside it, under a name of its own.
struct KeptPicture {
    std::filesystem::path path;
    FileState before{};     ///< as it was loaded
    bool notWhole = false;  ///< the page never held all that the file does

    /// Saves the page, into `room` where it is given. `aside` becomes the path under which another picture was put
    /// aside. False, with one line in `error`, on failure; all is then as it was.
    [[nodiscard]] bool save(const bitmap_s& page, Replacement* room, std::filesystem::path& aside, std::string& error);

    /// True when the file is the one that was loaded, so that it may go with its page.
    [[nodiscard]] bool isAsLoaded() const { return stateOf(path) == before; }

    /// The picture in words, and back: what a page log says about it. Nothing when the words are not such ones.
    [[nodiscard]] std::string inWords() const;
    [[nodiscard]] static std::optional<KeptPicture> fromWords(const std::string& words);
};

}  // namespace host
