// What is saved comes back whole, and pictures of every usual kind are read.
#include "platform/host/files/picture_file.h"

#include <gtest/gtest.h>

#include "files/scratch.h"

namespace {

using namespace std::string_literals;
using host::Formats;
using scratch::Bytes;

struct PictureFile : testing::Test {
    host::Picture read(std::string_view file, Formats formats) {
        return host::readPicture(folder_.write("a.jpg", file), formats, error_);
    }
    void expectRead(const char* name, bool whole, const Bytes& expected) {
        const host::Picture picture = read(scratch::sample(name), Formats::All);
        ASSERT_NE(picture.bitmap, nullptr) << name << ": " << error_;
        EXPECT_EQ(picture.whole, whole) << name;
        EXPECT_EQ(scratch::pixels(*picture.bitmap), expected) << name;
    }

    TemporaryFolder folder_;
    std::string error_;
};

TEST_F(PictureFile, ComesBackAsItWasSaved) {
    // Widths around the padding of rows.
    for (const int width : {1, 2, 3, 4, 5, 6, 10, 11, 47, 1404})
        for (const auto& [name, depth] : {std::pair("a.bmp", 8), {"A.BMP", 24}, {"a.png", 8}, {"a.png", 24}}) {
            const host::BitmapPtr picture = scratch::noise(width, 33, depth);
            ASSERT_TRUE(host::savePicture(folder_ / name, *picture, error_)) << error_;
            const host::BitmapPtr loaded = host::loadPicture(folder_ / name, error_);
            EXPECT_TRUE(scratch::same(loaded.get(), picture.get())) << name << width << "x" << depth;
        }
}

TEST_F(PictureFile, OfEveryKindIsReadAndComesOntoWhite) {
    // Above: red, black, white. Below: white, red, black.
    const Bytes flag{255, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 0, 0};
    for (const char* name : {"bits4.bmp", "bits8.bmp", "core8.bmp", "rle4.bmp", "bits16.bmp", "bits565.bmp",
                             "topdown24.bmp", "bits32.bmp"})
        expectRead(name, true, flag);
    expectRead("grey_alpha.png", false, {127, 255});
    expectRead("colour_alpha.png", false, {200, 100, 0, 244, 224, 204});
    expectRead("opaque.png", true, {1, 2, 3, 4, 5, 6});
    expectRead("grey_palette.png", true, {4, 9});
    expectRead("palette_alpha.png", false, {255, 255, 255, 1, 2, 3});
    // The library says of it that its light is linear; the values count.
    expectRead("grey16.png", false, {0x34, 0x80});
    expectRead("small.gif", false, {255, 0, 0, 255, 255, 255});
    expectRead("small.tif", false, {255, 0, 0, 0, 255, 0});
    EXPECT_EQ(read(scratch::sample("small.gif"), Formats::Pages).bitmap, nullptr);
}

TEST_F(PictureFile, APhotographStandsUpright) {
    for (const auto& [orientation, tall, right, below] : {std::tuple('\1', false, false, false),
                                                          {'\2', false, true, false},
                                                          {'\3', false, true, true},
                                                          {'\4', false, false, true},
                                                          {'\5', true, false, false},
                                                          {'\6', true, true, false},
                                                          {'\7', true, true, true},
                                                          {'\10', true, false, true},
                                                          {'\11', false, false, false}}) {
        const std::string notes =
            "\xFF\xE1\0\x22"s + "Exif\0\0MM\0\x2A\0\0\0\x08\0\1\x01\x12\0\3\0\0\0\1\0"s + orientation + "\0\0\0\0\0\0"s;
        const host::BitmapPtr bitmap = read(scratch::sample("quarter.jpg").insert(2, notes), Formats::All).bitmap;
        ASSERT_NE(bitmap, nullptr) << error_;
        const int width = tall ? 16 : 32, height = tall ? 32 : 16;
        ASSERT_EQ(std::pair(+bitmap->width, +bitmap->height), std::pair(width, height));
        const auto black = [&](bool x, bool y) {
            return host::bitmapRow(*bitmap, y ? height - 3 : 2)[3 * (x ? width - 3 : 2)] < 128;
        };
        EXPECT_TRUE(black(right, below) && !black(!right, below) && !black(right, !below)) << +orientation;
    }
}

}  // namespace
