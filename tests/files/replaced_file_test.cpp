// A file is replaced in one step or not at all, with room taken beforehand, whatever the system does meanwhile.
#include "platform/host/files/replaced_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/faulty_calls.h"
#include "files/scratch.h"

namespace {

using host::Replacement;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

constexpr std::uint64_t kRoom = 1 << 20;
const scratch::Bytes kNew(100'000, 'n');

struct ReplacedFile : testing::Test {
    ~ReplacedFile() override { scratch::fault = {}; }

    bool put(Replacement& replacement) { return replacement.put(kNew, host::Sync::Yes, reason_); }

    /// Bytes of the folder's disk that each of its files takes, those of hidden files first.
    std::vector<std::uint64_t> taken() const {
        std::vector<std::uint64_t> sizes;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            struct stat status {};
            ::stat(entry.path().c_str(), &status);
            const bool hidden = entry.path().filename().string().starts_with(".");
            sizes.insert(hidden ? sizes.begin() : sizes.end(), static_cast<std::uint64_t>(status.st_blocks) * 512);
        }
        return sizes;
    }

    TemporaryFolder folder_;
    const fs::path file_ = folder_.write("a.bmp", "old");
    const std::string new_ = std::string(kNew.begin(), kNew.end());
    std::string reason_;
};

TEST_F(ReplacedFile, RoomIsKeptUntilItIsUsed) {
    {
        Replacement replacement(file_);
        ASSERT_TRUE(replacement.reserve(kRoom, reason_)) << reason_;
        EXPECT_GE(taken()[0], kRoom);
        for (const char* call : {"pwrite", "ftruncate", "fsync"}) {
            scratch::fault = {call, ENOSPC};
            EXPECT_FALSE(put(replacement));
            EXPECT_EQ(reason_, "cannot be written: No space left on device");
            scratch::fault = {};
            EXPECT_EQ(contentOf(file_), "old");
            EXPECT_GE(taken()[0], kRoom) << call;
        }
        EXPECT_TRUE(put(replacement)) << reason_;
        EXPECT_EQ(contentOf(file_), new_);
        EXPECT_THAT(taken(), ElementsAre(testing::Lt(kRoom))) << "and what was not needed is given back";
        EXPECT_TRUE(replacement.reserve(kRoom, reason_)) << "for the next time";
    }
    EXPECT_EQ(taken().size(), 1) << "only the file itself";
}

TEST_F(ReplacedFile, TooLittleRoomIsToldBeforehand) {
    Replacement replacement(folder_ / "new folder/a.bmp");
    scratch::fault = {"fallocate", ENOSPC};
    EXPECT_FALSE(replacement.reserve(kRoom, reason_));
    EXPECT_EQ(reason_, "there is no room for it: No space left on device");
    EXPECT_TRUE(fs::is_empty(folder_ / "new folder"));
    scratch::fault = {"fallocate", EOPNOTSUPP};
    EXPECT_TRUE(replacement.reserve(kRoom, reason_)) << "nobody knows there";
    EXPECT_TRUE(put(replacement));
}

TEST_F(ReplacedFile, SignalsDoNotInterruptASave) {
    for (const char* call : {"flock", "fallocate", "pwrite", "ftruncate", "fsync"}) {
        scratch::fault = {call, EINTR, 0, 3};
        Replacement replacement(folder_ / call);
        EXPECT_TRUE(replacement.reserve(kRoom, reason_) && put(replacement)) << call << reason_;
        EXPECT_LT(scratch::fault.times, 0) << call;
        EXPECT_EQ(contentOf(folder_ / call), new_);
    }
}

TEST_F(ReplacedFile, IsMadeAnewWhereItsFolderHasGone) {
    Replacement replacement(folder_ / "folder/a.bmp");
    ASSERT_TRUE(replacement.reserve(kRoom, reason_));
    fs::rename(folder_ / "folder", folder_ / "moved");
    EXPECT_TRUE(put(replacement)) << reason_;
    EXPECT_EQ(contentOf(folder_ / "folder/a.bmp"), new_);
}

TEST_F(ReplacedFile, KeepsItsRightsAndItsLinks) {
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(file_.c_str(), 1234, 4321), 0);
    }
    fs::permissions(file_, fs::perms{0640});
    fs::create_symlink("a.bmp", folder_ / "link.bmp");
    struct stat before {};
    struct stat after {};
    ::stat(file_.c_str(), &before);
    ASSERT_TRUE(host::replaceFile(folder_ / "link.bmp", kNew, host::Sync::Yes, reason_)) << reason_;
    ::stat(file_.c_str(), &after);
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.bmp"));
    EXPECT_NE(after.st_ino, before.st_ino);
    EXPECT_EQ(std::tuple(after.st_mode, after.st_uid, after.st_gid),
              std::tuple(before.st_mode, before.st_uid, before.st_gid));
}

TEST_F(ReplacedFile, OnlyWhatNobodyHoldsIsAbandoned) {
    Replacement replacement(file_);
    ASSERT_TRUE(replacement.reserve(kRoom, reason_));
    for (const char* name : {".colour-killed.part", ".colour-other", "plain.part"}) folder_.write(name, "any");
    host::removeAbandoned(folder_.path());
    EXPECT_FALSE(fs::exists(folder_ / ".colour-killed.part"));
    EXPECT_EQ(taken().size(), 4) << "the file, what is held, and two of others";
    EXPECT_TRUE(put(replacement)) << reason_;
}

}  // namespace
