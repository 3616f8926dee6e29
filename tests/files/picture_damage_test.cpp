// Whatever a file holds, reading it neither crashes nor takes all memory; whatever happens to a save, the path
// holds the old or the new picture.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "files/faulty_calls.h"
#include "files/scratch.h"
#include "platform/host/files/picture_file.h"

namespace {

using namespace std::string_literals;
using host::BitmapPtr;
using testing::HasSubstr;

struct PictureDamage : testing::Test {
    void expectRefused(const std::filesystem::path& file, const std::string& reason) {
        std::string error;
        EXPECT_EQ(host::loadPicture(file, error), nullptr) << reason;
        EXPECT_THAT(error, testing::StartsWith(host::printable(file) + ": "));
        EXPECT_THAT(error, AllOf(HasSubstr(reason), Not(HasSubstr("\n"))));
    }

    std::string saved(const std::string& name, const bitmap_s& bitmap) {
        std::string error;
        EXPECT_TRUE(host::savePicture(folder_ / name, bitmap, error)) << error;
        return contentOf(folder_ / name);
    }

    /// One small file of each way to be read.
    std::vector<std::string> samples() {
        std::vector<std::string> all;
        for (const int depth : {8, 24, 32})
            for (const char* name : {"sample.bmp", "sample.png"})
                all.push_back(saved(name, *scratch::noise(7, 5, depth)));
        std::string packed = all[0].substr(0, 14 + 40 + 4 * 256);
        packed[30] = 1;  // RLE8: five rows of seven equal pixels
        for (char row = 0; row < 5; ++row) packed += {7, row, 0, 0};
        all.push_back(packed + "\0\1"s);
        return all;
    }

    TemporaryFolder folder_;
};

TEST_F(PictureDamage, AFileCutAnywhereIsRefused) {
    for (const std::string& whole : samples()) {
        std::string error;
        ASSERT_NE(host::loadPicture(folder_.write("cut.bmp", whole), error), nullptr) << error;
        for (std::size_t length = 0; length < whole.size(); ++length)
            expectRefused(folder_.write("cut.bmp", whole.substr(0, length)), "");
    }
}

TEST_F(PictureDamage, FlippedBytesNeverCrash) {
    std::mt19937 random(7);
    testing::internal::CaptureStderr();
    for (const std::string& whole : samples()) {
        for (int round = 0; round < 1000; ++round) {
            std::string bytes = whole;
            // Headers matter most: half of the flips go there.
            const std::size_t reach = round % 2 == 0 ? std::min<std::size_t>(bytes.size(), 80) : bytes.size();
            for (auto flips = 1 + random() % 3; flips > 0; --flips)
                bytes[random() % reach] ^= static_cast<char>(1U << random() % 8);
            std::string error;
            const BitmapPtr picture = host::loadPicture(folder_.write("flipped.bmp", bytes), error);
            ASSERT_EQ(picture == nullptr, !error.empty());
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the caller prints the one line";
}

TEST_F(PictureDamage, HeadersThatPromiseTooMuchAreRefused) {
    constexpr std::size_t kWidth = 18;
    constexpr std::size_t kHeight = 22;
    const std::vector<std::tuple<std::size_t, std::string, const char*>> lies{
        {kWidth, "\0\0\1\0"s, "larger than 65,535"},
        {kHeight, "\xFF\xFF\xFF\x7F", "larger than 65,535"},
        {kHeight, "\0\0\0\x80"s, "larger than 65,535"},
        {kWidth, "\0\0\0\0"s, "empty"},
        {kWidth, "\xFF\xFF\xFF\xFF", "empty"},
        {kHeight, "\x30\x75\0\0"s, "cut off"},
        {14, "\xFF\xFF\xFF\xFF", "unknown kind"},
        {28, "\7", "unknown kind"},
        {30, "\4", "unknown kind"},
        {10, "\x14", "contradict"},
        {10, "\xF0\xFF\xFF\xFF", "cut off"},
        {kWidth, "\x60\xEA\0\0\x60\xEA\0\0"s, "more pixels"}};
    const std::vector<std::string> all = samples();
    for (const auto& [at, lie, reason] : lies)
        expectRefused(folder_.write("lie.bmp", std::string(all[2]).replace(at, lie.size(), lie)), reason);
    // The header of an 8000 × 8000 picture, with its true checksum, before the pixels of a small one.
    const std::string lie = "\0\0\x1F\x40\0\0\x1F\x40\x08\2\0\0\0\x89\x93\x3A\xA3"s;
    expectRefused(folder_.write("lie.png", std::string(all[3]).replace(16, lie.size(), lie)), "promises more pixels");
}

TEST_F(PictureDamage, WhatIsNoPictureIsRefused) {
    folder_.write("text.bmp", "hello");
    folder_.write("empty.bmp", "");
    std::filesystem::create_directory(folder_ / "folder.bmp");
    ASSERT_EQ(::mkfifo((folder_ / "pipe.bmp").c_str(), 0600), 0);
    for (const auto& [name, reason] :
         {std::pair("text.bmp", "neither a BMP nor a PNG"), std::pair("empty.bmp", "is empty"),
          std::pair("folder.bmp", "not an ordinary file"), std::pair("pipe.bmp", "not an ordinary file"),
          std::pair("missing\nhere.bmp", "missing?here.bmp: No such file")})
        expectRefused(folder_ / name, reason);
}

TEST_F(PictureDamage, AFailureToReadIsToldAndNothingIsShown) {
    // Larger than what one call reads, so that each fails in the middle.
    for (const auto& [name, depth] :
         {std::pair("alpha.bmp", 32), std::pair("page.bmp", 24), std::pair("page.png", 24)}) {
        saved(name, *scratch::noise(300, 200, depth));
        for (int after = 0; after < 3; ++after) {
            scratch::fault = {"read", EIO, after};
            expectRefused(folder_ / name, "cannot be read: Input/output error");
            scratch::fault = {"read", EINTR, after, 1};
            std::string error;
            EXPECT_NE(host::loadPicture(folder_ / name, error), nullptr) << error;
        }
        scratch::fault = {};
    }
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{0, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    expectRefused(folder_ / "page.bmp", "Too many open files");
    setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(PictureDamage, AFailedSaveLeavesTheOldPicture) {
    const std::string old = saved("old.bmp", *scratch::noise(100, 80, 24));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    for (const rlim_t room : {0UL, 20UL, 24000UL}) {
        const rlimit limit{room, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::string error;
        const bool saved = host::savePicture(folder_ / "old.bmp", *scratch::noise(100, 80, 24, 2), error);
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_FALSE(saved) << room;
        EXPECT_THAT(error, HasSubstr("old.bmp: cannot be written: "));
        EXPECT_EQ(contentOf(folder_ / "old.bmp"), old);
        const std::filesystem::directory_iterator left(folder_.path());
        EXPECT_EQ(std::distance(begin(left), end(left)), 1) << "and no temporary file";
    }
}

TEST_F(PictureDamage, AKilledProgramLeavesAWholePicture) {
    const BitmapPtr even = scratch::noise(300, 200, 24, 1);
    const BitmapPtr odd = scratch::noise(250, 240, 24, 2);
    saved("a.bmp", *even);
    const std::filesystem::path file = folder_ / "a.bmp";
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
