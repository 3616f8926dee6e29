// Device paths become files in one place, and the pictures found there are listed newest first.
#include "platform/host/files/storage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "files/scratch.h"

namespace {

using host::Storage;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

TEST(Storage, DevicePathsLieUnderTheRoot) {
    const scratch::Folder folder;
    const Storage storage(folder.path());
    EXPECT_EQ(storage.problem(), "");
    EXPECT_EQ(storage.resolve("/mnt/ext1/My pictures/a.bmp"), folder / "My pictures/a.bmp");
    EXPECT_EQ(storage.resolve("/mnt/ext1"), folder.path());
    EXPECT_EQ(storage.resolve("/mnt/ext1//a"), folder / "a") << "never an absolute path of its own";
    EXPECT_EQ(storage.resolve("/mnt/ext10/a"), "/mnt/ext10/a");
    EXPECT_EQ(storage.resolve("/home/a.bmp"), "/home/a.bmp");
    EXPECT_EQ(storage.resolve("a.bmp"), "a.bmp");
}

TEST(Storage, ANamedFileHasADevicePath) {
    const scratch::Folder folder;
    const Storage storage(folder.path());
    EXPECT_EQ(storage.devicePath(folder / "My pictures/a.bmp"), "/mnt/ext1/My pictures/a.bmp");
    EXPECT_EQ(storage.devicePath("/mnt/ext1/My pictures/a.bmp"), "/mnt/ext1/My pictures/a.bmp");
    EXPECT_EQ(storage.devicePath(folder / "../a.bmp"), folder.path().parent_path() / "a.bmp");
    EXPECT_EQ(storage.devicePath(folder.path().string() + "2/a.bmp"), folder.path().string() + "2/a.bmp");
    EXPECT_EQ(storage.devicePath("a.bmp"), fs::current_path() / "a.bmp") << "the folder may change later";
}

TEST(Storage, AccessAndUnlinkGoThroughIt) {
    const scratch::Folder folder;
    const Storage storage(folder.path());
    EXPECT_EQ(storage.access("/mnt/ext1/a.bmp", F_OK), -1);
    scratch::write(folder / "a.bmp", {1});
    EXPECT_EQ(storage.access("/mnt/ext1/a.bmp", F_OK), 0);
    EXPECT_EQ(storage.unlink("/mnt/ext1/a.bmp"), 0);
    EXPECT_FALSE(fs::exists(folder / "a.bmp"));
    EXPECT_EQ(storage.unlink("/mnt/ext1/a.bmp"), -1);
    EXPECT_EQ(storage.access(nullptr, F_OK), -1);
    EXPECT_EQ(storage.unlink(nullptr), -1);
}

TEST(Storage, WithoutADirectoryItLiesUnderTheDataHome) {
    if (fs::exists("/mnt/ext1")) GTEST_SKIP() << "this machine has the device's own storage";
    const scratch::Folder folder;
    ::setenv("XDG_DATA_HOME", folder.path().c_str(), 1);
    EXPECT_EQ(Storage("").root(), folder / "colour");
    EXPECT_TRUE(fs::is_directory(folder / "colour/My pictures"));
    ::setenv("XDG_DATA_HOME", "not/absolute", 1);
    ::setenv("HOME", (folder / "home").c_str(), 1);
    EXPECT_EQ(Storage("").root(), folder / "home/.local/share/colour");
}

TEST(Storage, WhatIsInTheWayIsToldOnce) {
    const scratch::Folder folder;
    scratch::write(folder / "file", {1});
    testing::internal::CaptureStderr();
    const Storage storage(folder / "file");
    EXPECT_TRUE(storage.pictures().empty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "colour: " + storage.problem() + "\n");
    EXPECT_THAT(storage.problem(), HasSubstr((folder / "file/My pictures").string()));
}

TEST(Storage, HalfSavedPicturesOfKilledProgramsGoAway) {
    const scratch::Folder folder;
    fs::create_directory(folder / "My pictures");
    for (const std::string name : {".colour-1-0.part", ".colour-2-0.part", ".other.part", "old.bmp"}) {
        scratch::write(folder / ("My pictures/" + name), {1});
        const auto age = std::chrono::hours(name.find("-2-") != name.npos ? 0 : 2);
        fs::last_write_time(folder / ("My pictures/" + name), fs::file_time_type::clock::now() - age);
    }
    const Storage storage(folder.path());
    EXPECT_FALSE(fs::exists(folder / "My pictures/.colour-1-0.part"));
    EXPECT_TRUE(fs::exists(folder / "My pictures/.colour-2-0.part")) << "another program may still be at it";
    EXPECT_TRUE(fs::exists(folder / "My pictures/.other.part"));
    EXPECT_TRUE(fs::exists(folder / "My pictures/old.bmp"));
}

TEST(Storage, PicturesAreListedNewestFirst) {
    const scratch::Folder folder;
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
