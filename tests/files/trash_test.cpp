// What is thrown away can be brought back, and never over something else. Names that nothing has yet are found.
#include "platform/host/files/trash.h"

#include <gtest/gtest.h>

#include "files/scratch.h"
#include "platform/host/files/names.h"

namespace {

namespace fs = std::filesystem;

TEST(FreeName, IsThatOfAPageThatIsNotThere) {
    const TemporaryFolder folder;
    folder.write("scan (drawing).bmp", "any");
    fs::create_symlink("nowhere", folder / "scan (drawing 2).bmp");
    folder.write("page (2).PNG", "any");
    const std::string longest(250, 'x');
    std::string umlauts = "x";
    while (umlauts.size() < 249) umlauts += "ä";
    for (const auto& [wanted, note, name] :
         std::vector<std::array<std::string, 3>>{{"scan.jpg", "drawing", "scan (drawing 3).bmp"},
                                                 {"other.tar.webp", "drawing", "other.tar (drawing).bmp"},
                                                 {"page.PNG", "", "page (3).PNG"},
                                                 {longest + ".bmp", "", longest.substr(0, 247) + " (2).bmp"},
                                                 {umlauts + ".bmp", "n2", umlauts.substr(0, 245) + " (n2).bmp"}})
        EXPECT_EQ(host::freeName(folder / wanted, note), folder / name);
    EXPECT_EQ(host::unusedName(folder / "scan.jpg"), folder / "scan.jpg");
}

/// The home and its trash are a folder of the test's, on the same disk as its files.
struct Trash : testing::Test {
    Trash() {
        ::setenv("HOME", home().path().c_str(), 1);
        ::setenv("XDG_DATA_HOME", home().path().c_str(), 1);
    }
    /// One for all cases of a process: the library asks for it once.
    static const TemporaryFolder& home() {
        static const TemporaryFolder folder;
        return folder;
    }

    host::Trashed thrown(const fs::path& file) {
        const auto trashed = host::moveToTrash(file, folder_ / "storage", reason_);
        EXPECT_TRUE(trashed.has_value()) << reason_;
        EXPECT_FALSE(fs::exists(fs::symlink_status(file)));
        return trashed.value_or(host::Trashed{});
    }

    /// Files in the home's trash or their notes.
    static std::ptrdiff_t count(const char* folder) {
        std::error_code none;
        return std::distance(fs::directory_iterator(home() / "Trash" / folder, none), fs::directory_iterator());
    }

    const TemporaryFolder folder_;
    std::string reason_;
};

TEST_F(Trash, GivesBackWhatItWasGivenAndNeverOverAnotherFile) {
    const fs::path file = folder_.write("a/b ä.jpg", "first");
    const host::Trashed first = thrown(file);
    folder_.write("a/b ä.jpg", "second");
    const host::Trashed second = thrown(file);
    EXPECT_EQ(std::pair(count("files"), count("info")), std::pair(2L, 2L));
    folder_.write("a/b ä.jpg", "third");
    EXPECT_TRUE(host::restore(first, reason_)) << reason_;
    EXPECT_EQ(contentOf(file) + contentOf(folder_ / "a/b ä (2).jpg"), "thirdfirst");
    fs::remove_all(folder_ / "a");
    EXPECT_TRUE(host::restore(second, reason_)) << reason_;
    EXPECT_EQ(contentOf(file), "second");
    EXPECT_EQ(std::pair(count("files"), count("info")), std::pair(0L, 0L));
    EXPECT_FALSE(host::restore(first, reason_)) << "a second time";
    EXPECT_NE(reason_, "");
}

TEST_F(Trash, TakesALinkItselfAndNothingThatIsNotThere) {
    folder_.write("a.bmp", "any");
    fs::create_symlink("a.bmp", folder_ / "link.bmp");
    const host::Trashed trashed = thrown(folder_ / "link.bmp");
    EXPECT_EQ(contentOf(folder_ / "a.bmp"), "any");
    EXPECT_TRUE(host::restore(trashed, reason_)) << reason_;
    EXPECT_EQ(fs::read_symlink(folder_ / "link.bmp"), "a.bmp");
    EXPECT_FALSE(host::moveToTrash(folder_ / "gone.bmp", folder_.path(), reason_).has_value());
    EXPECT_EQ(reason_, "No such file or directory");
}

TEST_F(Trash, LiesInTheStorageWhereThereIsNoOther) {
    fs::remove_all(home() / "Trash");
    home().write("Trash", "in the way");
    const fs::path own = folder_ / "storage/Trash";
    const host::Trashed first = thrown(folder_.write("a.bmp", "first"));
    const host::Trashed second = thrown(folder_.write("a.bmp", "second"));
    EXPECT_EQ(std::pair(first.now, second.now), std::pair(own / "a.bmp", own / "a (2).bmp"));
    EXPECT_TRUE(host::restore(second, reason_)) << reason_;
    EXPECT_EQ(contentOf(folder_ / "a.bmp"), "second");
    const fs::path memory = "/dev/shm/colour trash test.bmp";
    std::ofstream(memory) << "on another disk";
    EXPECT_EQ(contentOf(thrown(memory).now), "on another disk");
    fs::remove(home() / "Trash");
}

}  // namespace
