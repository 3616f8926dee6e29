// A file is replaced with room taken beforehand, whatever the system does meanwhile.
#include "platform/host/files/replaced_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/faulty_calls.h"
#include "files/scratch.h"

namespace {

using host::Replacement;
namespace fs = std::filesystem;

constexpr std::uint64_t kRoom = 1 << 20;
const scratch::Bytes kNew(100'000, 'n');

struct ReplacedFile : testing::Test {
    bool put(Replacement& replacement) { return replacement.put(kNew, host::Sync::Yes, reason_); }

    static struct stat statusOf(const fs::path& file) {
        struct stat status {};
        ::stat(file.c_str(), &status);
        return status;
    }
    /// Bytes of the disk that the folder's files take.
    std::uint64_t taken() const {
        std::uint64_t bytes = 0;
        for (const auto& entry : fs::directory_iterator(folder_.path()))
            bytes += static_cast<std::uint64_t>(statusOf(entry.path()).st_blocks) * 512;
        return bytes;
    }
    std::ptrdiff_t files() const { return std::distance(fs::directory_iterator(folder_.path()), {}); }

    TemporaryFolder folder_;
    const fs::path file_ = folder_.write("a.bmp", "old");
    const std::string new_ = std::string(kNew.begin(), kNew.end());
    std::string reason_;
};

TEST_F(ReplacedFile, RoomIsKeptUntilItIsUsed) {
    {
        Replacement replacement(file_);
        ASSERT_TRUE(replacement.reserve(kRoom, reason_)) << reason_;
        scratch::fault = {"pwrite", ENOSPC};
        EXPECT_FALSE(put(replacement));
        EXPECT_EQ(reason_, "cannot be written: No space left on device");
        EXPECT_EQ(contentOf(file_), "old");
        EXPECT_GE(taken(), kRoom);
        scratch::fault = {};
        EXPECT_TRUE(put(replacement)) << reason_;
        EXPECT_EQ(contentOf(file_), new_);
        EXPECT_LT(taken(), kRoom) << "and what was not needed is given back";
        EXPECT_TRUE(replacement.reserve(kRoom, reason_)) << "for the next time";
    }
    EXPECT_EQ(files(), 1);
}

TEST_F(ReplacedFile, TooLittleRoomIsToldBeforehand) {
    Replacement replacement(folder_ / "new folder/a.bmp");
    scratch::fault = {"fallocate", ENOSPC};
    EXPECT_FALSE(replacement.reserve(kRoom, reason_));
    EXPECT_EQ(reason_, "there is no room for it: No space left on device");
    EXPECT_TRUE(fs::is_empty(folder_ / "new folder"));
    scratch::fault = {"fallocate", EOPNOTSUPP};
    EXPECT_TRUE(replacement.reserve(kRoom, reason_)) << "nobody knows there";
    scratch::fault = {};
    fs::rename(folder_ / "new folder", folder_ / "moved");
    EXPECT_TRUE(put(replacement)) << reason_;
    EXPECT_EQ(contentOf(folder_ / "new folder/a.bmp"), new_);
}

TEST_F(ReplacedFile, KeepsItsRightsAndItsLinks) {
    EXPECT_EQ(::geteuid() == 0 ? ::chown(file_.c_str(), 1234, 4321) : 0, 0);
    fs::permissions(file_, fs::perms{0640});
    fs::create_symlink("a.bmp", folder_ / "link.bmp");
    const struct stat before = statusOf(file_);
    ASSERT_TRUE(host::replaceFile(folder_ / "link.bmp", kNew, host::Sync::Yes, reason_)) << reason_;
    const struct stat after = statusOf(file_);
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
    EXPECT_EQ(files(), 4) << "the file, what is held, and two of others";
    EXPECT_TRUE(put(replacement)) << reason_;
}

}  // namespace
