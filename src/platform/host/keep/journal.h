#pragma once

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/host/files/file_handle.h"
#include "platform/host/keep/page_log.h"

namespace host {

/// Takes the lock of that name for this program; made where it is missing. Nothing on failure; `taken` then tells
/// whether another program has it.
[[nodiscard]] std::optional<FileHandle> lockFile(const std::filesystem::path& file, bool& taken);

/// The name under which a picture's recovery files stand in the recovery folder: the same for the same file.
[[nodiscard]] std::string recoveryName(const std::filesystem::path& picture);

/// Keeps the pages of one open picture on the disk, in threads for which the drawing never waits, so that a crash costs
/// no more than the stroke in hand. Three files: NAME, which holds the picture's path and whose lock belongs to the
/// program that has the picture; NAME.0 and NAME.1, page logs of which one is in use. Where that would grow beyond its
/// first page and half another one, the other is begun, and the old one goes once the new one is safe on the disk. What
/// nobody discards stays, for the next start to find.
class Journal {
public:
    /// `file` is the picture's recovery name in its folder, and `lock` the lock on it.
    Journal(std::filesystem::path file, FileHandle lock, const std::filesystem::path& picture);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    /// The picture's page is this one now; `about` is what the log says about the picture. Returns at once; of several
    /// pages that wait only the newest is written.
    void note(SharedPage page, bool asLoaded, std::string about);

    /// Waits until the page noted last is in the file. False when it is not.
    [[nodiscard]] bool settle();

    /// The picture is safe elsewhere: removes the files.
    void discard();

private:
    struct Page {
        SharedPage pixels;
        bool asLoaded = false;
        std::string about{};
    };
    void write();
    void sync();
    [[nodiscard]] bool keep(const Page& page);
    [[nodiscard]] bool beginLog(const Page& page, std::string& reason);
    [[nodiscard]] std::filesystem::path logFile(std::uint32_t number) const;
    void tellUnprotected(const std::string& reason);
    void end();

    std::filesystem::path file_;
    FileHandle lock_;

    // The writing thread's own.
    std::optional<PageLog> log_;
    std::uint32_t number_ = 0;
    std::uint64_t firstSize_ = 0;
    std::atomic<bool> told_ = false;

    std::mutex mutex_;  ///< guards what follows
    std::condition_variable changed_;
    std::optional<Page> next_;
    bool writing_ = false;
    bool kept_ = true;
    bool ended_ = false;
    FileHandle unsynced_;                            ///< the log, once more, where it is newer than the disk
    std::optional<std::filesystem::path> outdated_;  ///< the log before, until the present one is safe
    bool hurry_ = false;                             ///< somebody waits for that

    std::thread writer_;
    std::thread syncer_;
};

}  // namespace host
