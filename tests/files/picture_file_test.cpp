// What is saved comes back whole, and pictures of every usual kind are read.
#include "platform/host/files/picture_file.h"

#include <gtest/gtest.h>
#include <png.h>

#include "files/scratch.h"

namespace {

using host::BitmapPtr;
using scratch::Bytes;
namespace fs = std::filesystem;

class PictureFile : public testing::Test {
protected:
    BitmapPtr load(const fs::path& file) { return host::loadPicture(file, error_); }
    bool save(const fs::path& file, const bitmap_s& bitmap) { return host::savePicture(file, bitmap, error_); }

    TemporaryFolder folder_;
    std::string error_;
};

TEST_F(PictureFile, ComesBackAsItWasSaved) {
    // Widths around the padding of rows.
    for (const int width : {1, 2, 3, 4, 5, 6, 10, 11, 47, 1404}) {
        for (const int depth : {8, 24}) {
            for (const char* name : {"a.bmp", "a.png", "A.BMP"}) {
                const BitmapPtr picture = scratch::noise(width, 33, depth);
                ASSERT_TRUE(save(folder_ / name, *picture)) << error_;
                EXPECT_TRUE(scratch::same(load(folder_ / name).get(), picture.get())) << name << width << "x" << depth;
            }
        }
    }
    const BitmapPtr picture = scratch::noise(47, 33, 24);
    ASSERT_TRUE(save(folder_ / "a.png", *picture));
    fs::rename(folder_ / "a.png", folder_ / "b.bmp");
    EXPECT_TRUE(scratch::same(load(folder_ / "b.bmp").get(), picture.get())) << "the content counts, not the name";
}

Bytes littleEndian(std::initializer_list<std::pair<std::uint32_t, int>> fields) {
    Bytes bytes;
    for (const auto& [value, count] : fields) {
        for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// A BMP of 3 × 2 pixels with the 40-byte header; `tables` are masks and palette.
Bytes bmp(int height, int bits, unsigned compression, const Bytes& tables, const Bytes& pixels) {
    const auto start = static_cast<std::uint32_t>(54 + tables.size());
    const auto colours = bits <= 8 ? static_cast<std::uint32_t>(tables.size() / 4) : 0;
    return Bytes{'B', 'M'} +
           littleEndian({{start + static_cast<std::uint32_t>(pixels.size()), 4}, {0, 4}, {start, 4}, {40, 4}, {3, 4}}) +
           littleEndian({{static_cast<std::uint32_t>(height), 4}, {1, 2}, {static_cast<std::uint32_t>(bits), 2}}) +
           littleEndian({{compression, 4}, {0, 4}, {0, 4}, {0, 4}, {colours, 4}, {0, 4}}) + tables + pixels;
}

TEST_F(PictureFile, EveryKindOfBmpIsRead) {
    // Above: red, black, white. Below: white, red, black. The palette is black, red, white.
    const Bytes palette{0, 0, 0, 0, 0, 0, 255, 0, 255, 255, 255, 0};
    const Bytes expected{255, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 0, 0};
    const Bytes masks565 = littleEndian({{0xF800, 4}, {0x07E0, 4}, {0x001F, 4}});
    const Bytes masksRgb = littleEndian({{0xFF, 4}, {0xFF00, 4}, {0xFF0000, 4}});
    const Bytes core = Bytes{'B', 'M'} +
                       littleEndian({{0, 4}, {0, 4}, {35, 4}, {12, 4}, {3, 2}, {2, 2}, {1, 2}, {8, 2}}) +
                       Bytes{0, 0, 0, 0, 0, 255, 255, 255, 255} + Bytes{2, 1, 0, 0, 1, 0, 2, 0};
    const std::vector<std::pair<const char*, Bytes>> kinds{
        {"4 bits", bmp(2, 4, 0, palette, {0x21, 0, 0, 0, 0x10, 0x20, 0, 0})},
        {"8 bits", bmp(2, 8, 0, palette, {2, 1, 0, 0, 1, 0, 2, 0})},
        {"8 bits, top-down", bmp(-2, 8, 0, palette, {1, 0, 2, 0, 2, 1, 0, 0})},
        {"8 bits, OS/2", core},
        {"RLE8", bmp(2, 8, 1, palette, {0, 3, 2, 1, 0, 0, 0, 0, 1, 1, 1, 0, 1, 2, 0, 1})},
        {"RLE4", bmp(2, 4, 2, palette, {0, 3, 0x21, 0x00, 0, 0, 2, 0x10, 1, 0x20, 0, 1})},
        {"16 bits",
         bmp(2, 16, 0, {}, littleEndian({{0x7FFF, 2}, {0x7C00, 2}, {0, 4}, {0x7C00, 2}, {0, 2}, {0x7FFF, 4}}))},
        {"16 bits, 565",
         bmp(2, 16, 3, masks565, littleEndian({{0xFFFF, 2}, {0xF800, 2}, {0, 4}, {0xF800, 2}, {0, 2}, {0xFFFF, 4}}))},
        {"24 bits, top-down",
         bmp(-2, 24, 0, {}, {0, 0, 255, 0, 0, 0, 255, 255, 255, 0, 0, 0, 255, 255, 255, 0, 0, 255, 0, 0, 0, 0, 0, 0})},
        {"32 bits",
         bmp(2, 32, 0, {}, littleEndian({{0xFFFFFF, 4}, {0xFF0000, 4}, {0, 4}, {0xFF0000, 4}, {0, 4}, {0xFFFFFF, 4}}))},
        {"32 bits, masks",
         bmp(2, 32, 3, masksRgb, littleEndian({{0xFFFFFF, 4}, {0xFF, 4}, {0, 4}, {0xFF, 4}, {0, 4}, {0xFFFFFF, 4}}))},
    };
    for (const auto& [name, bytes] : kinds) {
        scratch::write(folder_ / "a.bmp", bytes);
        const BitmapPtr picture = load(folder_ / "a.bmp");
        ASSERT_NE(picture, nullptr) << name << ": " << error_;
        ASSERT_EQ(picture->depth, 24) << name;
        EXPECT_EQ(scratch::pixels(*picture), expected) << name;
    }
}

/// A PNG file of two pixels, in one of the library's formats.
Bytes png(png_uint_32 format, const Bytes& pixels, const Bytes& colours = {}) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = 2;
    image.height = 1;
    image.format = format;
    image.colormap_entries = 2;
    Bytes file(1000);
    png_alloc_size_t size = file.size();
    png_image_write_to_memory(&image, file.data(), &size, 0, pixels.data(), 0,
                              colours.empty() ? nullptr : colours.data());
    file.resize(size);
    return file;
}

TEST_F(PictureFile, EveryKindOfPngIsReadAndComesOntoWhite) {
    const std::vector<std::tuple<const char*, Bytes, Bytes>> kinds{
        {"grey", png(PNG_FORMAT_GRAY, {0, 200}), {0, 200}},
        {"grey, alpha", png(PNG_FORMAT_GA, {0, 128, 7, 0}), {127, 255}},
        {"colour", png(PNG_FORMAT_RGB, {1, 2, 3, 4, 5, 6}), {1, 2, 3, 4, 5, 6}},
        {"colour, alpha", png(PNG_FORMAT_RGBA, {200, 100, 0, 255, 200, 100, 0, 51}), {200, 100, 0, 244, 224, 204}},
        {"palette", png(PNG_FORMAT_RGB_COLORMAP, {1, 0}, {1, 2, 3, 4, 5, 6}), {4, 5, 6, 1, 2, 3}},
        {"grey palette", png(PNG_FORMAT_RGB_COLORMAP, {1, 0}, {9, 9, 9, 4, 4, 4}), {4, 9}},
        {"palette, alpha", png(PNG_FORMAT_RGBA_COLORMAP, {1, 0}, {1, 2, 3, 255, 4, 5, 6, 0}), {255, 255, 255, 1, 2, 3}},
        // The library says of these that their light is linear; the values count.
        {"16 bits", png(PNG_FORMAT_LINEAR_Y, {0x12, 0x34, 0x12, 0x80}), {0x34, 0x80}}};
    for (const auto& [name, bytes, expected] : kinds) {
        scratch::write(folder_ / "a.png", bytes);
        const BitmapPtr picture = load(folder_ / "a.png");
        ASSERT_NE(picture, nullptr) << name << ": " << error_;
        EXPECT_EQ(picture->depth, expected.size() == 2 ? 8 : 24) << name;
        EXPECT_EQ(scratch::pixels(*picture), expected) << name;
    }
}

}  // namespace
