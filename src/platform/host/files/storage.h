#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace host {

/// One picture of the user's.
struct PictureEntry {
    std::string devicePath;      ///< "/mnt/ext1/My pictures/…"
    std::filesystem::path file;  ///< where it is on this machine
    std::filesystem::file_time_type changed;
    std::uintmax_t bytes = 0;  ///< the file's size
};

/// The one place where device paths become files. Paths under "/mnt/ext1/" lie under the root; all others stand
/// as they are.
class Storage {
public:
    /// `directory` is the root; when empty, "/mnt/ext1" itself where it exists and can be written, else
    /// $XDG_DATA_HOME/colour, else ~/.local/share/colour (of the password database's home where $HOME is none). Makes
    /// the root and its "My pictures" folder; when that fails, says so in one line on standard error. Removes what a
    /// killed program left half saved.
    explicit Storage(const std::string& directory);

    /// One line that says why pictures cannot be kept; empty when all is well.
    [[nodiscard]] const std::string& problem() const { return problem_; }
    [[nodiscard]] const std::filesystem::path& root() const { return root_; }
    [[nodiscard]] std::filesystem::path pictureFolder() const;

    [[nodiscard]] std::filesystem::path resolve(const std::string& devicePath) const;

    /// The device path of a file named on the command line; an absolute path when it lies outside the root.
    [[nodiscard]] std::string devicePath(const std::string& file) const;

    /// As the C library's, on device paths: 0 on success, -1 on failure.
    [[nodiscard]] int access(const char* devicePath, int mode) const;
    int unlink(const char* devicePath) const;

    /// The first number, from this one on, that no picture under "My pictures" is named after ("picture_NUMBER.bmp" or
    /// .png): new pictures are named after the second they were begun in.
    [[nodiscard]] long freeNumber(long seconds) const;

    /// The pictures under "My pictures" (see isPictureName), newest first; of equal times, by name downwards.
    /// Hidden files, folders and names that are not UTF-8 are left out.
    [[nodiscard]] std::vector<PictureEntry> pictures() const;

private:
    std::filesystem::path root_;
    std::string problem_;
};

}  // namespace host
