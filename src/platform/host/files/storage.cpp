#include "platform/host/files/storage.h"

#include <glib.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <system_error>

#include "platform/host/files/picture_file.h"
#include "platform/host/files/replaced_file.h"

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDeviceRoot = "/mnt/ext1";
constexpr const char* kPicturesFolder = "My pictures";

/// Absolute, whatever the environment says: a relative folder would be another one in the next session.
fs::path dataFolder() {
    const char* const chosen = std::getenv("XDG_DATA_HOME");
    if (chosen != nullptr && fs::path(chosen).is_absolute()) return chosen;
    const char* home = std::getenv("HOME");
    if (home == nullptr || fs::path(home).is_relative()) {
        const passwd* user = ::getpwuid(::getuid());
        home = user == nullptr ? "" : user->pw_dir;
    }
    return fs::path("/") / home / ".local/share";
}

fs::path chooseRoot(const std::string& directory) {
    if (!directory.empty()) return directory;
    std::error_code ignored;
    if (fs::is_directory(kDeviceRoot, ignored) && ::access(kDeviceRoot.data(), W_OK) == 0) return kDeviceRoot;
    return dataFolder() / "colour";
}

/// Why pictures cannot be kept in this folder, which is made where it is missing; empty when they can.
std::string findProblem(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) return "pictures cannot be kept: " + printable(folder) + ": " + error.message();
    if (::access(folder.c_str(), R_OK | W_OK | X_OK) == 0) return {};
    return "pictures cannot be kept: " + printable(folder) + ": " + std::strerror(errno);
}

bool isListed(const fs::path& file) {
    const std::string name = file.filename().string();
    return !name.starts_with('.') && isPictureName(file) &&
           g_utf8_validate(name.data(), static_cast<gssize>(name.size()), nullptr) != 0;
}

bool isNewer(const PictureEntry& left, const PictureEntry& right) {
    if (left.changed != right.changed) return left.changed > right.changed;
    return left.devicePath > right.devicePath;
}

}  // namespace

Storage::Storage(const std::string& directory)
    : root_(chooseRoot(directory)), problem_(findProblem(root_ / kPicturesFolder)) {
    if (!problem_.empty()) std::fprintf(stderr, "colour: %s\n", problem_.c_str());
    removeAbandoned(root_ / kPicturesFolder);
}

fs::path Storage::pictureFolder() const { return root_ / kPicturesFolder; }

fs::path Storage::resolve(const std::string& devicePath) const {
    if (devicePath == kDeviceRoot) return root_;
    const std::string_view path = devicePath;
    if (!path.starts_with(kDeviceRoot) || path[kDeviceRoot.size()] != '/') return devicePath;
    const std::size_t start = path.find_first_not_of('/', kDeviceRoot.size());
    return start == std::string_view::npos ? root_ : root_ / path.substr(start);
}

std::string Storage::devicePath(const std::string& file) const {
    std::error_code ignored;
    const fs::path absolute = fs::weakly_canonical(fs::absolute(resolve(file), ignored), ignored);
    const fs::path inside = absolute.lexically_relative(fs::weakly_canonical(root_, ignored));
    if (inside.empty() || *inside.begin() == "..") return absolute.string();
    return (fs::path(kDeviceRoot) / inside).string();
}

int Storage::access(const char* devicePath, int mode) const {
    return devicePath == nullptr ? -1 : ::access(resolve(devicePath).c_str(), mode);
}

int Storage::unlink(const char* devicePath) const {
    return devicePath == nullptr ? -1 : ::unlink(resolve(devicePath).c_str());
}

long Storage::freeNumber(long seconds) const {
    const auto isTaken = [this](long number) {
        const std::string name = "picture_" + std::to_string(number);
        std::error_code ignored;
        const fs::path folder = root_ / kPicturesFolder;
        return fs::exists(fs::symlink_status(folder / (name + ".bmp"), ignored)) ||
               fs::exists(fs::symlink_status(folder / (name + ".png"), ignored));
    };
    while (isTaken(seconds)) ++seconds;
    return seconds;
}

std::vector<PictureEntry> Storage::pictures() const {
    std::vector<PictureEntry> found;
    std::error_code error;
    const std::string devicePrefix = std::string(kDeviceRoot) + "/" + kPicturesFolder + "/";
    for (fs::directory_iterator entry(root_ / kPicturesFolder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code gone;  // a file may go away while the folder is read
        if (!isListed(entry->path()) || !entry->is_regular_file(gone)) continue;
        PictureEntry picture{devicePrefix + entry->path().filename().string(), entry->path(),
                             entry->last_write_time(gone), entry->file_size(gone)};
        if (!gone) found.push_back(std::move(picture));
    }
    std::sort(found.begin(), found.end(), isNewer);
    return found;
}

}  // namespace host
