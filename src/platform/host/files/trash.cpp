#include "platform/host/files/trash.h"

#include <gio/gio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

#include "platform/host/files/names.h"
#include "platform/host/files/picture_file.h"

namespace host {

namespace {

namespace fs = std::filesystem;

using FileObject = std::unique_ptr<GFile, decltype(&g_object_unref)>;
using ErrorObject = std::unique_ptr<GError, decltype(&g_error_free)>;

/// The local files alone are asked: the library's usual way would load other ones, and start their programs.
FileObject fileObject(const fs::path& file) {
    return {g_vfs_get_file_for_path(g_vfs_get_local(), file.c_str()), g_object_unref};
}

bool trash(const fs::path& file) {
    GError* error = nullptr;
    const bool moved = g_file_trash(fileObject(file).get(), nullptr, &error) != FALSE;
    const ErrorObject owned(error, g_error_free);
    return moved;
}

/// Moves a file, to another disk too, where it comes to stand beside what is already there.
std::optional<fs::path> move(const fs::path& file, const fs::path& wanted, std::string& reason) {
    std::error_code failure;
    fs::create_directories(wanted.parent_path(), failure);
    for (;;) {
        const fs::path target = unusedName(wanted);
        GError* error = nullptr;
        const auto flags = static_cast<GFileCopyFlags>(G_FILE_COPY_NOFOLLOW_SYMLINKS);
        if (g_file_move(fileObject(file).get(), fileObject(target).get(), flags, nullptr, nullptr, nullptr, &error))
            return target;
        const ErrorObject owned(error, g_error_free);
        if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_EXISTS)) continue;
        reason = failure ? "its folder cannot be made: " + failure.message() : printable(error->message);
        return std::nullopt;
    }
}

/// Where the file with this number on this disk lies in a trash folder; empty when it is in none.
fs::path findIn(const fs::path& folder, const struct stat& sought) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        struct stat found {};
        if (entry->path().empty() || ::lstat(entry->path().c_str(), &found) != 0) continue;
        if (found.st_dev == sought.st_dev && found.st_ino == sought.st_ino) return entry->path();
    }
    return {};
}

/// The system does not say under which name it keeps what it was given: looked for in the home's trash, then in those
/// that the disk of the file may have on top.
fs::path findTrashed(const fs::path& was, const struct stat& sought) {
    fs::path now = findIn(fs::path(g_get_user_data_dir()) / "Trash/files", sought);
    const std::string user = std::to_string(::getuid());
    std::error_code ignored;
    fs::path folder = fs::weakly_canonical(was.parent_path(), ignored);
    for (bool more = true; more && now.empty(); more = folder != folder.root_path(), folder = folder.parent_path()) {
        now = findIn(folder / ".Trash" / user / "files", sought);
        if (now.empty()) now = findIn(folder / (".Trash-" + user) / "files", sought);
    }
    return now;
}

}  // namespace

std::optional<Trashed> moveToTrash(const fs::path& file, const fs::path& storageRoot, std::string& reason) {
    std::error_code error;
    const fs::path was = fs::absolute(file, error);
    struct stat status {};
    if (error || ::lstat(was.c_str(), &status) != 0) {
        reason = error ? error.message() : std::strerror(errno);
        return std::nullopt;
    }
    if (trash(was)) return Trashed{was, findTrashed(was, status)};
    std::optional<fs::path> now = move(was, fs::absolute(storageRoot, error) / "Trash" / was.filename(), reason);
    if (!now) return std::nullopt;
    return Trashed{was, *now};
}

bool restore(const Trashed& trashed, std::string& reason) {
    if (trashed.now.empty()) {
        reason = "is in the trash under a name that is not known";
        return false;
    }
    if (!move(trashed.now, trashed.was, reason)) return false;
    const fs::path folder = trashed.now.parent_path();
    std::error_code ignored;
    if (folder.filename() == "files")
        fs::remove(folder.parent_path() / "info" / (trashed.now.filename().string() + ".trashinfo"), ignored);
    return true;
}

}  // namespace host
