// Device paths become files in one place, and the pictures found there are listed newest first.
#include "platform/host/files/storage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace {

using host::Storage;
using testing::ElementsAre;
namespace fs = std::filesystem;

TEST(Storage, DevicePathsLieUnderTheRoot) {
    const TemporaryFolder folder;
    const Storage storage(folder.path());
    EXPECT_EQ(storage.problem(), "");
    for (const auto& [path, file] :
         {std::pair("/mnt/ext1/My pictures/a.bmp", folder / "My pictures/a.bmp"), std::pair("/mnt/ext1", folder.path()),
          std::pair("/mnt/ext1//a", folder / "a"),  // never an absolute path of its own
          std::pair("/mnt/ext10/a", fs::path("/mnt/ext10/a")), std::pair("a.bmp", fs::path("a.bmp"))})
        EXPECT_EQ(storage.resolve(path), file) << path;
}

TEST(Storage, LiesInAnAbsolutePlace) {
    const TemporaryFolder folder;
    if (fs::exists("/mnt/ext1")) GTEST_SKIP() << "this is a device";
    ::setenv("XDG_DATA_HOME", "relative", 1);
    ::setenv("HOME", folder.path().c_str(), 1);
    EXPECT_EQ(Storage("").root(), folder / ".local/share/colour");
    ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    EXPECT_EQ(Storage("").root(), folder / "data/colour");
}

TEST(Storage, ANewPictureTakesNoOthersNumber) {
    const TemporaryFolder folder;
    const Storage storage(folder.path());
    EXPECT_EQ(storage.freeNumber(5), 5);
    folder.write("My pictures/picture_5.bmp", "any");
    folder.write("My pictures/picture_6.png", "any");
    fs::create_symlink("gone", folder / "My pictures/picture_7.bmp");
    EXPECT_EQ(std::pair(storage.freeNumber(4), storage.freeNumber(5)), std::pair(4L, 8L));
}

TEST(Storage, PicturesAreListedNewestFirst) {
    const TemporaryFolder folder;
    const Storage storage(folder.path());
    const auto now = fs::file_time_type::clock::now();
    for (const auto& [name, age] :
         {std::pair("old.bmp", 3), std::pair("new.PNG", 1), std::pair("same a.bmp", 2), std::pair("same b.Bmp", 2),
          std::pair(".hidden.bmp", 0), std::pair("photograph.Jpeg", 4), std::pair("notes.txt", 0),
          std::pair("broken \xFF.bmp", 0)})
        fs::last_write_time(folder.write(std::string("My pictures/") + name, "any"), now - std::chrono::seconds(age));
    fs::create_directory(folder / "My pictures/folder.bmp");
    fs::create_symlink("gone", folder / "My pictures/dangling.bmp");
    std::vector<std::string> paths;
    for (const host::PictureEntry& entry : storage.pictures()) {
        paths.push_back(entry.devicePath);
        EXPECT_EQ(entry.file, storage.resolve(entry.devicePath));
        EXPECT_EQ(entry.bytes, 3U);
    }
    EXPECT_THAT(paths, ElementsAre("/mnt/ext1/My pictures/new.PNG", "/mnt/ext1/My pictures/same b.Bmp",
                                   "/mnt/ext1/My pictures/same a.bmp", "/mnt/ext1/My pictures/old.bmp",
                                   "/mnt/ext1/My pictures/photograph.Jpeg"));
}

}  // namespace
