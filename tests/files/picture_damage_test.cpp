// Whatever a file holds, reading it neither crashes nor takes all memory; whatever happens to a save, the path
// holds the old or the new picture.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "files/scratch.h"
#include "platform/host/files/picture_file.h"

namespace {

using host::BitmapPtr;
using scratch::Bytes;
using testing::HasSubstr;
using testing::Not;

class PictureDamage : public testing::Test {
protected:
    void expectRefused(const std::filesystem::path& file, const std::string& reason) {
        std::string error;
        EXPECT_EQ(host::loadPicture(file, error), nullptr) << reason;
        EXPECT_THAT(error, HasSubstr(file.filename().string() + ": "));
        EXPECT_THAT(error, HasSubstr(reason));
        EXPECT_THAT(error, Not(HasSubstr("\n")));
    }

    void save(const std::string& name, const bitmap_s& bitmap) {
        std::string error;
        ASSERT_TRUE(host::savePicture(folder_ / name, bitmap, error)) << error;
    }

    /// One small file of each way to be read.
    std::vector<Bytes> samples() {
        std::vector<Bytes> all;
        for (const int depth : {8, 24, 32}) {
            for (const char* name : {"sample.bmp", "sample.png"}) {
                save(name, *scratch::noise(7, 5, depth));
                all.push_back(scratch::read(folder_ / name));
            }
        }
        Bytes packed = all[0];
        packed.resize(14 + 40 + 4 * 256);
        packed[30] = 1;  // RLE8: five rows of seven equal pixels
        for (std::uint8_t row = 0; row < 5; ++row) packed.insert(packed.end(), {7, row, 0, 0});
        packed.insert(packed.end(), {0, 1});
        all.push_back(packed);
        return all;
    }

    TemporaryFolder folder_;
};

TEST_F(PictureDamage, AFileCutAnywhereIsRefused) {
    for (const Bytes& whole : samples()) {
        scratch::write(folder_ / "cut.bmp", whole);
        std::string error;
        ASSERT_NE(host::loadPicture(folder_ / "cut.bmp", error), nullptr) << error;
        for (std::size_t length = 0; length < whole.size(); ++length) {
            scratch::write(folder_ / "cut.bmp", Bytes(whole.begin(), whole.begin() + static_cast<long>(length)));
            ASSERT_EQ(host::loadPicture(folder_ / "cut.bmp", error), nullptr) << length << " of " << whole.size();
            ASSERT_THAT(error, testing::StartsWith((folder_ / "cut.bmp: ").string()));
        }
    }
}

TEST_F(PictureDamage, FlippedBytesNeverCrash) {
    std::mt19937 random(7);
    testing::internal::CaptureStderr();
    for (const Bytes& whole : samples()) {
        for (int round = 0; round < 1000; ++round) {
            Bytes bytes = whole;
            // Headers matter most: half of the flips go there.
            const std::size_t reach = round % 2 == 0 ? std::min<std::size_t>(bytes.size(), 80) : bytes.size();
            for (auto flips = 1 + random() % 3; flips > 0; --flips) {
                bytes[random() % reach] ^= static_cast<std::uint8_t>(1U << random() % 8);
            }
            scratch::write(folder_ / "flipped.bmp", bytes);
            std::string error;
            const BitmapPtr picture = host::loadPicture(folder_ / "flipped.bmp", error);
            ASSERT_EQ(picture == nullptr, !error.empty());
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the caller prints the one line";
}

void setLongWord(Bytes& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

TEST_F(PictureDamage, HeadersThatPromiseTooMuchAreRefused) {
    constexpr std::size_t kWidth = 18;
    constexpr std::size_t kHeight = 22;
    const Bytes whole = samples()[2];
    const std::vector<std::tuple<std::size_t, std::uint32_t, const char*>> lies{
        {kWidth, 65536, "larger than 65,535"},
        {kHeight, 0x7FFFFFFF, "larger than 65,535"},
        {kHeight, 0x80000000, "larger than 65,535"},
        {kWidth, 0, "empty"},
        {kWidth, 0xFFFFFFFF, "empty"},
        {kHeight, 30000, "cut off"},
        {14, 0xFFFFFFFF, "unknown kind"},
        {28, 7, "unknown kind"},
        {30, 4, "unknown kind"},
        {10, 20, "contradict"},
        {10, 0xFFFFFFF0, "cut off"}};
    for (const auto& [at, value, reason] : lies) {
        Bytes bytes = whole;
        setLongWord(bytes, at, value);
        scratch::write(folder_ / "lie.bmp", bytes);
        expectRefused(folder_ / "lie.bmp", reason);
    }
    Bytes large = whole;
    setLongWord(large, kWidth, 60000);
    setLongWord(large, kHeight, 60000);
    scratch::write(folder_ / "large.bmp", large);
    std::filesystem::resize_file(folder_ / "large.bmp", 11ULL << 30);  // takes no room on the disk
    expectRefused(folder_ / "large.bmp", "more pixels");

    // The header of an 8000 × 8000 picture, with its true checksum, before the pixels of a small one.
    Bytes png = samples()[3];
    const Bytes header{0, 0, 0x1F, 0x40, 0, 0, 0x1F, 0x40, 8, 2, 0, 0, 0, 0x89, 0x93, 0x3A, 0xA3};
    std::copy(header.begin(), header.end(), png.begin() + 16);
    scratch::write(folder_ / "lie.png", png);
    expectRefused(folder_ / "lie.png", "promises more pixels than it holds");
}

TEST_F(PictureDamage, WhatIsNoPictureIsRefused) {
    folder_.write("text.bmp", "hello");
    folder_.write("empty.bmp", "");
    std::filesystem::create_directory(folder_ / "folder.bmp");
    ASSERT_EQ(::mkfifo((folder_ / "pipe.bmp").c_str(), 0600), 0);
    for (const auto& [name, reason] :
         {std::pair("text.bmp", "neither a BMP nor a PNG"), std::pair("empty.bmp", "is empty"),
          std::pair("folder.bmp", "not an ordinary file"), std::pair("pipe.bmp", "not an ordinary file"),
          std::pair("missing.bmp", "No such file")})
        expectRefused(folder_ / name, reason);
    std::string error;
    EXPECT_EQ(host::loadPicture(folder_ / "two\nlines.bmp", error), nullptr);
    EXPECT_THAT(error, HasSubstr("two?lines.bmp"));
}

TEST_F(PictureDamage, AFailedSaveLeavesTheOldPicture) {
    save("old.bmp", *scratch::noise(100, 80, 24));
    save("old.png", *scratch::noise(100, 80, 24));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    for (const char* name : {"old.bmp", "old.png"}) {
        const Bytes old = scratch::read(folder_ / name);
        for (const rlim_t room : {0UL, 20UL, 2000UL, 24000UL}) {
            const rlimit limit{room, before.rlim_max};
            setrlimit(RLIMIT_FSIZE, &limit);
            std::string error;
            const bool saved = host::savePicture(folder_ / name, *scratch::noise(100, 80, 24, 2), error);
            setrlimit(RLIMIT_FSIZE, &before);
            EXPECT_FALSE(saved) << name << room;
            EXPECT_THAT(error, HasSubstr(std::string(name) + ": cannot be written: "));
            EXPECT_EQ(scratch::read(folder_ / name), old);
            const std::filesystem::directory_iterator left(folder_.path());
            EXPECT_EQ(std::distance(begin(left), end(left)), 2) << "and no temporary file";
        }
    }
}

TEST_F(PictureDamage, AKilledProgramLeavesAWholePicture) {
    const std::filesystem::path file = folder_ / "a.bmp";
    const BitmapPtr even = scratch::noise(300, 200, 24, 1);
    const BitmapPtr odd = scratch::noise(250, 240, 24, 2);
    save("a.bmp", *even);
    for (useconds_t round = 0; round < 20; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            std::string error;
            for (int i = 0;; ++i) static_cast<void>(host::savePicture(file, i % 2 == 0 ? *odd : *even, error));
        }
        ::usleep(3000 + 617 * round);
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        std::string error;
        const BitmapPtr found = host::loadPicture(file, error);
        ASSERT_TRUE(scratch::same(found.get(), even.get()) || scratch::same(found.get(), odd.get())) << error;
    }
}

}  // namespace
