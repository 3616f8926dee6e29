// What is saved comes back whole, and pictures of every usual kind are read.
#include "platform/host/files/picture_file.h"

#include <gtest/gtest.h>
#include <png.h>

#include "files/scratch.h"

namespace {

using host::BitmapPtr;
using scratch::Bytes;
namespace fs = std::filesystem;

struct PictureFile : testing::Test {
    void expectRead(const char* kind, std::string_view file, const Bytes& expected) {
        const BitmapPtr picture = host::loadPicture(folder_.write("a.bmp", file), error_);
        ASSERT_NE(picture, nullptr) << kind << ": " << error_;
        EXPECT_EQ(picture->depth, expected.size() == 2 ? 8 : 24) << kind;
        EXPECT_EQ(scratch::pixels(*picture), expected) << kind;
    }

    TemporaryFolder folder_;
    std::string error_;
};

TEST_F(PictureFile, ComesBackAsItWasSaved) {
    // Widths around the padding of rows.
    for (const int width : {1, 2, 3, 4, 5, 6, 10, 11, 47, 1404}) {
        for (const int depth : {8, 24}) {
            for (const char* name : {"a.bmp", "a.png", "A.BMP"}) {
                const BitmapPtr picture = scratch::noise(width, 33, depth);
                ASSERT_TRUE(host::savePicture(folder_ / name, *picture, error_)) << error_;
                const BitmapPtr loaded = host::loadPicture(folder_ / name, error_);
                EXPECT_TRUE(scratch::same(loaded.get(), picture.get())) << name << width << "x" << depth;
            }
        }
    }
}

/// A BMP of 3 × 2 pixels with the 40-byte header, in words of 16 bits; `tables` are masks and palette.
std::u16string bmp(bool topDown, char16_t bits, char16_t compression, const std::u16string& tables,
                   const std::u16string& pixels) {
    const auto start = static_cast<char16_t>(54 + 2 * tables.size());
    const char16_t height = topDown ? 0xFFFE : 2, sign = topDown ? 0xFFFF : 0, colours = bits <= 8 ? 3 : 0;
    return std::u16string{0x4D42, 0, 0, 0, 0, start, 0, 40, 0, 3, 0, height, sign, 1, bits, compression} +
           std::u16string{0, 0, 0, 0, 0, 0, 0, colours, 0, 0, 0} + tables + pixels;
}

TEST_F(PictureFile, EveryKindOfBmpIsRead) {
    // Above: red, black, white. Below: white, red, black. The palette is black, red, white.
    const std::u16string palette{0, 0, 0, 0xFF, 0xFFFF, 0xFF};
    const std::pair<const char*, std::u16string> kinds[]{
        {"4 bits", bmp(false, 4, 0, palette, {0x21, 0, 0x2010, 0})},
        {"8 bits", bmp(false, 8, 0, palette, {0x0102, 0, 1, 2})},
        {"8 bits, OS/2", {0x4D42, 0, 0, 0, 0, 36, 0, 12, 0, 3, 2, 1, 8, 0, 0, 0xFF00, 0xFFFF, 0xFF, 0x0102, 0, 1, 2}},
        {"RLE4", bmp(false, 4, 2, palette, {0x0300, 0x21, 0, 0x1002, 0x2001, 0x0100})},
        {"16 bits", bmp(false, 16, 0, {}, {0x7FFF, 0x7C00, 0, 0, 0x7C00, 0, 0x7FFF, 0})},
        {"565", bmp(false, 16, 3, {0xF800, 0, 0x7E0, 0, 0x1F, 0}, {0xFFFF, 0xF800, 0, 0, 0xF800, 0, 0xFFFF, 0})},
        {"top-down", bmp(true, 24, 0, {}, {0, 0xFF, 0, 0xFFFF, 0xFF, 0, 0xFFFF, 0xFF, 0xFF00, 0, 0, 0})},
        {"32 bits", bmp(false, 32, 0, {}, {0xFFFF, 0xFF, 0, 0xFF, 0, 0, 0, 0xFF, 0, 0, 0xFFFF, 0xFF})},
    };
    for (const auto& [name, words] : kinds)
        expectRead(name, {reinterpret_cast<const char*>(words.data()), 2 * words.size()},
                   {255, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 0, 0});
}

/// A PNG file of two pixels, in one of the library's formats.
std::string png(png_uint_32 format, const Bytes& pixels, const Bytes& colours = {}) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = 2;
    image.height = 1;
    image.format = format;
    image.colormap_entries = 2;
    std::string file(1000, '\0');
    png_alloc_size_t size = file.size();
    png_image_write_to_memory(&image, file.data(), &size, 0, pixels.data(), 0, colours.data());
    return file.substr(0, size);
}

TEST_F(PictureFile, EveryKindOfPngIsReadAndComesOntoWhite) {
    expectRead("grey, alpha", png(PNG_FORMAT_GA, {0, 128, 7, 0}), {127, 255});
    expectRead("colour, alpha", png(PNG_FORMAT_RGBA, {200, 100, 0, 255, 200, 100, 0, 51}),
               {200, 100, 0, 244, 224, 204});
    expectRead("grey palette", png(PNG_FORMAT_RGB_COLORMAP, {1, 0}, {9, 9, 9, 4, 4, 4}), {4, 9});
    expectRead("palette, alpha", png(PNG_FORMAT_RGBA_COLORMAP, {1, 0}, {1, 2, 3, 255, 4, 5, 6, 0}),
               {255, 255, 255, 1, 2, 3});
    // The library says of these that their light is linear; the values count.
    expectRead("16 bits", png(PNG_FORMAT_LINEAR_Y, {0x12, 0x34, 0x12, 0x80}), {0x34, 0x80});
}

TEST_F(PictureFile, IsWholeWhenARecordHoldsAllOfIt) {
    for (const auto& [whole, file] : {std::pair(true, png(PNG_FORMAT_RGB_COLORMAP, {1, 0}, {9, 9, 9, 4, 4, 4})),
                                      std::pair(true, png(PNG_FORMAT_RGBA, {1, 2, 3, 255, 4, 5, 6, 255})),
                                      std::pair(false, png(PNG_FORMAT_RGBA, {1, 2, 3, 255, 4, 5, 6, 254})),
                                      std::pair(false, png(PNG_FORMAT_LINEAR_Y, {0x12, 0x34, 0x12, 0x80}))})
        EXPECT_EQ(host::readPicture(folder_.write("a.png", file), host::Formats::Pages, error_).whole, whole) << error_;
    for (const std::uint8_t alpha : scratch::Bytes{254, 255}) {
        BitmapPtr picture = scratch::noise(3, 2, 32);
        for (int i = 3; i < 24; i += 4) bitmap_pixels(picture.get())[i] = alpha;
        ASSERT_TRUE(host::savePicture(folder_ / "a.bmp", *picture, error_)) << error_;
        EXPECT_EQ(host::readPicture(folder_ / "a.bmp", host::Formats::Pages, error_).whole, alpha == 255) << error_;
    }
}

}  // namespace
