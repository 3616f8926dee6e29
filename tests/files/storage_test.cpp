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
    for (const auto& [path, file] : std::vector<std::pair<std::string, fs::path>>{
             {"/mnt/ext1/My pictures/a.bmp", folder / "My pictures/a.bmp"},
             {"/mnt/ext1", folder.path()},
             {"/mnt/ext1//a", folder / "a"},  // never an absolute path of its own
             {"/mnt/ext10/a", "/mnt/ext10/a"},
             {"/home/a.bmp", "/home/a.bmp"},
             {"a.bmp", "a.bmp"}})
        EXPECT_EQ(storage.resolve(path), file) << path;
    for (const auto& [file, path] : std::vector<std::pair<fs::path, std::string>>{
             {folder / "My pictures/a.bmp", "/mnt/ext1/My pictures/a.bmp"},
             {"/mnt/ext1/My pictures/a.bmp", "/mnt/ext1/My pictures/a.bmp"},
             {folder / "../a.bmp", folder.path().parent_path() / "a.bmp"},
             {folder.path().string() + "2/a.bmp", folder.path().string() + "2/a.bmp"},
             {"a.bmp", fs::current_path() / "a.bmp"}})  // the folder may change later
        EXPECT_EQ(storage.devicePath(file), path) << file;
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
    folder.write("file", "x");
    testing::internal::CaptureStderr();
    const Storage storage(folder / "file");
    EXPECT_TRUE(storage.pictures().empty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "colour: " + storage.problem() + "\n");
    EXPECT_THAT(storage.problem(), HasSubstr((folder / "file/My pictures").string()));
}

TEST(Storage, HalfSavedPicturesOfKilledProgramsGoAway) {
    const scratch::Folder folder;
    // What is young another program may still be at.
    const auto files = {std::tuple(".colour-1-0.part", 2, false), std::tuple(".colour-2-0.part", 0, true),
                        std::tuple(".other.part", 2, true), std::tuple("old.bmp", 2, true)};
    for (const auto& [name, hours, stays] : files) {
        const fs::path file = folder.write(std::string("My pictures/") + name, "x");
        fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(hours));
    }
    const Storage storage(folder.path());
    for (const auto& [name, hours, stays] : files) EXPECT_EQ(fs::exists(folder / "My pictures" / name), stays) << name;
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
