// Whatever a file holds, and whatever the disk does, reading it neither crashes nor takes all memory.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "files/faulty_calls.h"
#include "files/scratch.h"
#include "platform/host/files/picture_file.h"

namespace {

using namespace std::string_literals;
using testing::HasSubstr;

struct PictureDamage : testing::Test {
    /// The one line that tells why a file is refused; empty when it is read.
    static std::string told(const std::filesystem::path& file) {
        std::string error;
        const bool read = host::readPicture(file, host::Formats::All, error).bitmap != nullptr;
        EXPECT_EQ(read, error.empty());
        EXPECT_TRUE(read || error.starts_with(host::printable(file) + ": ")) << error;
        EXPECT_THAT(error, Not(HasSubstr("\n")));
        return error;
    }
    std::string toldOf(const std::string& bytes) { return told(folder_.write("a.bmp", bytes)); }

    std::string saved(const std::string& name, int width, int height, int depth = 24) {
        std::string error;
        EXPECT_TRUE(host::savePicture(folder_ / name, *scratch::noise(width, height, depth), error)) << error;
        return contentOf(folder_ / name);
    }

    TemporaryFolder folder_;
    const std::string bmp_ = saved("a.bmp", 7, 5);
    const std::string png_ = saved("a.png", 7, 5);
};

TEST_F(PictureDamage, OfAnyBytesIsToldInOneLine) {
    std::mt19937 random(7);
    testing::internal::CaptureStderr();
    for (const std::string name : {"bits8.bmp", "rle8.bmp", "topdown24.bmp", "alpha32.bmp", "grey.png",
                                   "colour_alpha.png", "small.gif", "small.tif", "small.webp", "quarter.jpg"}) {
        const std::string whole = scratch::sample(name);
        ASSERT_EQ(toldOf(whole), "");
        // The last bytes of a photograph say only that nothing follows.
        for (std::size_t length = 0; length + (host::isPageName(name) ? 0 : 8) < whole.size(); ++length)
            EXPECT_NE(toldOf(whole.substr(0, length)), "") << name << length;
        for (int round = 0; round < 500; ++round) {
            std::string bytes = whole;
            // Headers matter most: half of the flips go there.
            bytes[random() % std::min<std::size_t>(bytes.size(), round % 2 == 0 ? 80 : 10'000)] ^=
                static_cast<char>(1U << random() % 8);
            toldOf(bytes);
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the caller prints the line";
}

TEST_F(PictureDamage, HeadersThatPromiseTooMuchAreRefused) {
    constexpr std::size_t kWidth = 18;
    constexpr std::size_t kHeight = 22;
    const std::string jpeg = scratch::sample("quarter.jpg"), gif = scratch::sample("small.gif"),
                      tiff = scratch::sample("small.tif"), large = "\xFF\xFF\xFF\xFF";
    const std::size_t frame = jpeg.find("\0\x11\x08"s) + 3, image = gif.find("\x2C\0"s) + 5,
                      channels = tiff.find("\x15\1\3\0"s) + 8;
    for (const auto& [file, at, lie, reason] :
         std::vector<std::tuple<std::string, std::size_t, std::string, const char*>>{
             {bmp_, kWidth, "\0\0\1\0"s, "larger than 65,535"},
             {bmp_, kHeight, "\0\0\0\x80"s, "larger than 65,535"},
             {bmp_, kWidth, "\0\0\0\0"s, "empty"},
             {bmp_, kHeight, "\x30\x75\0\0"s, "cut off"},
             {bmp_, 14, large, "unknown kind"},
             {bmp_, 10, "\x14", "contradict"},
             {bmp_, kWidth, "\x60\xEA\0\0\x60\xEA\0\0"s, "more pixels"},
             // 8000 × 8000, with its true checksum.
             {png_, 16, "\0\0\x1F\x40\0\0\x1F\x40\x08\2\0\0\0\x89\x93\x3A\xA3"s, "promises more pixels"},
             {jpeg, frame, large, "more pixels"},
             {jpeg, frame + 4, "\4", "four inks"},
             {gif, 6, large, "more pixels"},
             {gif, image, large, "more pixels"},
             {tiff, 18, "\4\0\1\0\0\0"s + large, "65,535"},
             {tiff, channels, "\xFF\xFF", "contradict"},
             {tiff, channels + 4, "\x42\1\4\0\1\0\0\0\0\0\1\0"s, "65,535"},
             {"RIFF\x24\0\0\0WEBPVP8X\x0A\0\0\0\0\0\0\0"s, 24, "\xFF\xFF\0\xFF\xFF\0"s, "65,535"}})
        EXPECT_THAT(toldOf(std::string(file).replace(at, lie.size(), lie)), HasSubstr(reason));
}

TEST_F(PictureDamage, WhatIsNoPictureIsRefused) {
    EXPECT_THAT(toldOf("hello"), HasSubstr("is no BMP, PNG, JPEG, WebP, GIF or TIFF picture"));
    EXPECT_THAT(toldOf(""), HasSubstr("is empty"));
    ASSERT_EQ(::mkfifo((folder_ / "pipe.bmp").c_str(), 0600), 0);
    EXPECT_THAT(told(folder_ / "pipe.bmp"), HasSubstr("not an ordinary file"));
    EXPECT_THAT(told(folder_ / "missing\nhere.bmp"), HasSubstr("missing?here.bmp: No such file"));
}

TEST_F(PictureDamage, AFailureToReadIsToldAndNothingIsShown) {
    for (const auto& [name, depth] : {std::pair("alpha.bmp", 32), {"page.bmp", 24}, {"page.png", 24}}) {
        // Larger than what one call reads, so that each fails in the middle.
        saved(name, 300, 200, depth);
        for (int after = 0; after < 3; ++after) {
            scratch::fault = {"read", EIO, after};
            EXPECT_THAT(told(folder_ / name), HasSubstr("cannot be read: Input/output error"));
        }
        scratch::fault = {};
    }
}

}  // namespace
