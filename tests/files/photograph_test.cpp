// Pictures that are read but never saved as they are: JPEG, WebP, GIF and TIFF.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/photographs.h"
#include "files/scratch.h"
#include "platform/host/files/picture_file.h"

namespace {

using namespace scratch;
using namespace std::string_literals;
using host::Formats;
using host::Picture;
using testing::HasSubstr;

std::string exif(char orientation) {
    return "\xFF\xE1\0\x22"s + "Exif\0\0"s + "MM\0\x2A\0\0\0\x08"s + "\0\1\x01\x12\0\3\0\0\0\1\0"s + orientation +
           "\0\0\0\0\0\0"s;
}

struct Photograph : testing::Test {
    Picture read(const std::string& bytes, Formats formats = Formats::All) {
        return host::readPicture(folder_.write("a.jpg", bytes), formats, error_);
    }

    const std::string all_[4]{jpeg(), gif(), tiff(), webp()};
    TemporaryFolder folder_;
    std::string error_;
};

TEST_F(Photograph, IsReadOnlyWhereAllFormatsAre) {
    for (const std::string& file : all_) {
        EXPECT_EQ(read(file, Formats::Pages).bitmap, nullptr);
        EXPECT_THAT(error_, HasSubstr("a.jpg: is neither a BMP nor a PNG"));
        const Picture picture = read(file);
        ASSERT_NE(picture.bitmap, nullptr) << error_;
        EXPECT_FALSE(picture.whole);
        EXPECT_EQ(picture.bitmap->depth, 24);
    }
    EXPECT_EQ(scratch::pixels(*read(gif()).bitmap), (scratch::Bytes{255, 0, 0, 255, 255, 255})) << "on white";
    EXPECT_EQ(scratch::pixels(*read(tiff()).bitmap), (scratch::Bytes{255, 0, 0, 0, 255, 0}));
    EXPECT_EQ(read("anything else").bitmap, nullptr);
    EXPECT_THAT(error_, HasSubstr("is no BMP, PNG, JPEG, WebP, GIF or TIFF picture"));
}

TEST_F(Photograph, StandsUpright) {
    struct Case {
        char orientation;
        bool upended, right, below;  ///< where the black quarter is to be seen
    };
    for (const auto& [orientation, upended, right, below] :
         {Case{1, false, false, false}, Case{2, false, true, false}, Case{3, false, true, true},
          Case{4, false, false, true}, Case{5, true, false, false}, Case{6, true, true, false},
          Case{7, true, true, true}, Case{8, true, false, true}, Case{9, false, false, false}}) {
        const Picture picture = read(jpeg(exif(orientation)));
        ASSERT_NE(picture.bitmap, nullptr) << error_;
        const bitmap_s& bitmap = *picture.bitmap;
        EXPECT_EQ(std::pair(+bitmap.width, +bitmap.height), upended ? std::pair(16, 32) : std::pair(32, 16));
        for (const bool x : {false, true})
            for (const bool y : {false, true})
                EXPECT_EQ(host::bitmapRow(bitmap, y ? bitmap.height - 3 : 2)[3 * (x ? bitmap.width - 3 : 2)] < 128,
                          x == right && y == below)
                    << +orientation << " " << x << y;
    }
}

TEST_F(Photograph, ThatIsCutOrDamagedNeitherCrashesNorSpeaks) {
    std::mt19937 random(7);
    testing::internal::CaptureStderr();
    for (const std::string& whole : all_) {
        // The last bytes say only that nothing follows.
        for (std::size_t length = 1; length + 8 < whole.size(); ++length)
            EXPECT_EQ(read(whole.substr(0, length)).bitmap, nullptr) << whole.substr(0, 3) << length;
        for (int round = 0; round < 1000; ++round) {
            std::string bytes = whole;
            bytes[random() % bytes.size()] ^= static_cast<char>(1U << random() % 8);
            const bool refused = read(bytes).bitmap == nullptr;
            ASSERT_EQ(refused, !error_.empty());
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the caller prints the one line";
}

TEST_F(Photograph, ThatPromisesTooMuchIsRefusedBeforeItIsDecoded) {
    const std::string large = "\xFF\xFF\xFF\xFF";
    const std::string frame = "\0\x11\x08"s;
    const auto at = [](const std::string& file, const std::string& mark) { return file.find(mark) + mark.size(); };
    const std::string canvas = "RIFF\x24\0\0\0WEBPVP8X\x0A\0\0\0\0\0\0\0\xFF\xFF\0\xFF\xFF\0"s;
    for (const auto& [bytes, reason] :
         {std::pair(std::string(jpeg()).replace(at(jpeg(), frame), 4, large), "more pixels"),
          std::pair(std::string(jpeg()).replace(at(jpeg(), frame), 4, "\0\0\0\1"s), "empty"),
          std::pair(std::string(jpeg()).replace(at(jpeg(), frame) + 4, 1, "\4"), "four inks"),
          std::pair(std::string(gif()).replace(6, 4, large), "more pixels"),
          std::pair(std::string(gif()).replace(at(gif(), "\x2C\0\0\0\0"s), 4, large), "more pixels"),
          std::pair(std::string(tiff()).replace(18, 10, "\4\0\1\0\0\0"s + large), "65,535"),
          std::pair(std::string(tiff()).replace(at(tiff(), "\x15\1\3\0\1\0\0\0"s), 2, "\xFF\xFF"), "contradict"),
          std::pair(
              std::string(tiff()).replace(at(tiff(), "\x15\1\3\0\1\0\0\0"s) + 4, 10, "\x42\1\4\0\1\0\0\0\0\0\1\0"s),
              "65,535"),
          std::pair(canvas, "65,535")}) {
        EXPECT_EQ(read(bytes).bitmap, nullptr) << reason;
        EXPECT_THAT(error_, HasSubstr(reason));
    }
}

}  // namespace
