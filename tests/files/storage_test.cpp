// Device paths become files in one place, and the pictures found there are listed newest first.
#include "platform/host/files/storage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/scratch.h"

namespace {

using host::Storage;
using testing::ElementsAre;
namespace fs = std::filesystem;

TEST(Storage, DevicePathsLieUnderTheRoot) {
    const TemporaryFolder folder;
    const Storage storage(folder.path());
    EXPECT_EQ(storage.problem(), "");
    for (const auto& [path, file] : std::vector<std::pair<std::string, fs::path>>{
             {"/mnt/ext1/My pictures/a.bmp", folder / "My pictures/a.bmp"},
             {"/mnt/ext1", folder.path()},
             {"/mnt/ext1//a", folder / "a"},  // never an absolute path of its own
             {"/mnt/ext10/a", "/mnt/ext10/a"},
             {"/home/a.bmp", "/home/a.bmp"},
             {"a.bmp", "a.bmp"}})
        EXPECT_EQ(storage.resolve(path), file) << path;
}

TEST(Storage, PicturesAreListedNewestFirst) {
    const TemporaryFolder folder;
    const Storage storage(folder.path());
    const fs::path pictures = folder / "My pictures";
    const auto now = fs::file_time_type::clock::now();
    const std::vector<std::pair<const char*, int>> files{
        {"old.bmp", 3},     {"new.PNG", 1},        {"same a.bmp", 2}, {"same b.Bmp", 2},
        {".hidden.bmp", 0}, {"photograph.jpg", 0}, {"no ending", 0},  {"broken \xFF.bmp", 0}};
    for (const auto& [name, age] : files) {
        scratch::write(pictures / name, {1, 2, 3});
        fs::last_write_time(pictures / name, now - std::chrono::seconds(age));
    }
    fs::create_directory(pictures / "folder.bmp");
    fs::create_symlink("gone", pictures / "dangling.bmp");

    std::vector<std::string> paths;
    for (const host::PictureEntry& entry : storage.pictures()) {
        paths.push_back(entry.devicePath);
        EXPECT_EQ(entry.file, storage.resolve(entry.devicePath));
        EXPECT_EQ(entry.bytes, 3U);
    }
    EXPECT_THAT(paths, ElementsAre("/mnt/ext1/My pictures/new.PNG", "/mnt/ext1/My pictures/same b.Bmp",
                                   "/mnt/ext1/My pictures/same a.bmp", "/mnt/ext1/My pictures/old.bmp"));
}

}  // namespace
