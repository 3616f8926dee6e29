// What is saved comes back whole, and pictures of every usual kind are read.
#include "platform/host/files/picture_file.h"

#include <SDL_image.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "files/scratch.h"

namespace {

using host::BitmapPtr;
using scratch::Bytes;
using testing::HasSubstr;
namespace fs = std::filesystem;

class PictureFile : public testing::Test {
protected:
    BitmapPtr load(const fs::path& file) { return host::loadPicture(file, error_); }
    bool save(const fs::path& file, const bitmap_s& bitmap) { return host::savePicture(file, bitmap, error_); }

    scratch::Folder folder_;
    std::string error_;
};

TEST_F(PictureFile, ComesBackAsItWasSaved) {
    // Widths around the padding of rows and the five pixels that are exchanged at once.
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

/// A record with these first bytes of its pixels.
BitmapPtr record(int width, int depth, const Bytes& bytes) {
    BitmapPtr bitmap = host::makeBitmap(width, 1, depth);
    std::copy(bytes.begin(), bytes.end(), bitmap_pixels(bitmap.get()));
    return bitmap;
}

TEST_F(PictureFile, FewerBitsBecomeGreysAndTransparentPartsWhite) {
    struct Case {
        BitmapPtr picture;
        Bytes expected;
    };
    const Case cases[] = {
        {record(10, 1, {0b10110000, 0b01000000}), {255, 0, 255, 255, 0, 0, 0, 0, 0, 255}},
        {record(3, 4, {0x0F, 0x70}), {0, 255, 119}},
        {record(3, 32, {10, 20, 30, 255, 10, 20, 30, 0, 0, 100, 255, 51}), {10, 20, 30, 255, 255, 255, 204, 224, 255}}};
    for (const auto& [picture, expected] : cases) {
        for (const char* name : {"a.bmp", "a.png"}) {
            ASSERT_TRUE(save(folder_ / name, *picture)) << error_;
            const BitmapPtr read = load(folder_ / name);
            ASSERT_NE(read, nullptr) << error_;
            EXPECT_EQ(scratch::pixels(*read), expected) << name;
        }
    }
}

TEST_F(PictureFile, OtherProgramsReadWhatIsSaved) {
    for (const int depth : {8, 24, 32}) {
        const BitmapPtr picture = scratch::noise(47, 33, depth);
        for (const char* name : {"a.bmp", "a.png"}) {
            ASSERT_TRUE(save(folder_ / name, *picture));
            SDL_Surface* loaded = IMG_Load((folder_ / name).c_str());
            SDL_Surface* surface = SDL_ConvertSurfaceFormat(loaded, SDL_PIXELFORMAT_RGBA32, 0);
            for (int i = 0; i < 33 * 47; ++i) {
                const auto* pixel = static_cast<const std::uint8_t*>(surface->pixels) + std::ptrdiff_t{i} * 4;
                const std::uint8_t* stored = bitmap_pixels(picture.get()) + std::ptrdiff_t{i} * depth / 8;
                for (int c = 0; c < 3; ++c) ASSERT_EQ(pixel[c], stored[depth == 8 ? 0 : c]) << name << " " << i;
                ASSERT_EQ(pixel[3], depth == 32 ? stored[3] : 255) << "nothing is lost in the file";
            }
            SDL_FreeSurface(surface);
            SDL_FreeSurface(loaded);
        }
    }
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

TEST_F(PictureFile, APaletteOfGreysGivesGreys) {
    const Bytes two{200, 200, 200, 0, 50, 50, 50, 0};
    Bytes negative;  // a full palette that runs downwards, which is no copy of the stored bytes
    for (unsigned i = 0; i < 256; ++i) negative.insert(negative.end(), 4, static_cast<std::uint8_t>(255 - i));
    const std::pair<Bytes, Bytes> cases[] = {
        {bmp(2, 1, 0, two, {0b01000000, 0, 0, 0, 0b10100000, 0, 0, 0}), {50, 200, 50, 200, 50, 200}},
        {bmp(-2, 8, 0, negative, {0, 1, 2, 0, 253, 254, 255, 0}), {255, 254, 253, 2, 1, 0}}};
    for (const auto& [bytes, expected] : cases) {
        scratch::write(folder_ / "a.bmp", bytes);
        const BitmapPtr picture = load(folder_ / "a.bmp");
        ASSERT_NE(picture, nullptr) << error_;
        EXPECT_EQ(scratch::pixels(*picture), expected);
    }
}

TEST_F(PictureFile, KeepsPermissionsAndLinks) {
    const BitmapPtr picture = scratch::noise(5, 4, 8);
    ASSERT_TRUE(save(folder_ / "real.bmp", *picture));
    fs::permissions(folder_ / "real.bmp", fs::perms{0640});
    fs::create_symlink("real.bmp", folder_ / "link.bmp");
    fs::create_symlink("not yet.bmp", folder_ / "dangling.bmp");
    const BitmapPtr other = scratch::noise(5, 4, 8, 2);
    ASSERT_TRUE(save(folder_ / "link.bmp", *other)) << error_;
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.bmp"));
    EXPECT_TRUE(scratch::same(load(folder_ / "real.bmp").get(), other.get()));
    EXPECT_EQ(fs::status(folder_ / "real.bmp").permissions(), fs::perms{0640});
    ASSERT_TRUE(save(folder_ / "dangling.bmp", *other)) << error_;
    EXPECT_TRUE(fs::is_regular_file(folder_ / "not yet.bmp"));
    ASSERT_TRUE(save(folder_ / "My pictures/new.bmp", *other)) << error_;
    EXPECT_EQ(folder_.entries(), 5U) << "and no temporary file";
}

TEST_F(PictureFile, OtherEndingsAreRefused) {
    const BitmapPtr picture = scratch::noise(5, 4, 8);
    EXPECT_FALSE(save(folder_ / "a.jpg", *picture));
    EXPECT_THAT(error_, HasSubstr("a.jpg: JPEG cannot be saved without loss"));
    EXPECT_FALSE(save(folder_ / "a", *picture));
    EXPECT_THAT(error_, HasSubstr(".bmp or .png"));
    EXPECT_EQ(folder_.entries(), 0U);
}

}  // namespace
