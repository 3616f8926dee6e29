#include <SDL.h>
#include <SDL_image.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>

#include "pixels.h"
#include "platform/host/screen/png_writer.h"
#include "platform/host/screen/screen.h"

namespace host {
namespace {

BitmapPtr bitmapOf(int width, int height, int depth, std::initializer_list<int> bytes) {
    BitmapPtr bitmap = makeBitmap(width, height, depth);
    EXPECT_EQ(pixelBytes(*bitmap), bytes.size());
    std::uint8_t* next = bitmap_pixels(bitmap.get());
    for (const int byte : bytes) *next++ = static_cast<std::uint8_t>(byte);
    return bitmap;
}

std::vector<Rgb> row(const BitmapPtr& bitmap, PixelFormat format, Rgb paper = kWhite) {
    Screen screen({bitmap->width, 1}, format);
    screen.fill({0, 0, bitmap->width, 1}, paper);
    screen.draw({0, 0}, *bitmap);
    std::vector<Rgb> colours;
    for (int x = 0; x < bitmap->width; ++x) colours.push_back(colourAt(screen.pixels(), x, 0));
    return colours;
}

using Colours = std::vector<Rgb>;

TEST(Bitmap, EveryDepthShowsItsColours) {
    const BitmapPtr bits = bitmapOf(10, 1, 1, {0b10100001, 0b01111111});
    const BitmapPtr nibbles = bitmapOf(3, 1, 4, {0x0F, 0x7F});
    const BitmapPtr bytes = bitmapOf(3, 1, 8, {0, 100, 255});
    const BitmapPtr colours = bitmapOf(3, 1, 24, {255, 0, 0, 0, 255, 0, 1, 2, 3});
    const BitmapPtr alphas = bitmapOf(3, 1, 32, {255, 0, 0, 255, 255, 0, 0, 0, 0, 0, 255, 128});
    for (const PixelFormat format : {PixelFormat::Grey8, PixelFormat::Rgb24}) {
        EXPECT_EQ(row(bits, format), (Colours{kWhite, 0, kWhite, 0, 0, 0, 0, kWhite, 0, kWhite}));
        EXPECT_EQ(row(nibbles, format), (Colours{0, kWhite, 0x777777}));
        EXPECT_EQ(row(bytes, format), (Colours{0, 0x646464, kWhite}));
    }
    EXPECT_EQ(row(colours, PixelFormat::Rgb24), (Colours{0xFF0000, 0x00FF00, 0x010203}));
    EXPECT_EQ(row(colours, PixelFormat::Grey8), (Colours{0x4C4C4C, 0x969696, 0x020202}));
    EXPECT_EQ(row(alphas, PixelFormat::Rgb24), (Colours{0xFF0000, kWhite, 0x7F7FFF}));
    EXPECT_EQ(row(alphas, PixelFormat::Rgb24, kBlack), (Colours{0xFF0000, kBlack, 0x000080}));
    EXPECT_EQ(row(alphas, PixelFormat::Grey8), (Colours{0x4C4C4C, kWhite, 0x8E8E8E}));
}

TEST(Bitmap, BadRecordsDrawNothingAndSaySo) {
    const BitmapPtr odd = bitmapOf(2, 1, 8, {0, 0});
    odd->depth = 7;
    testing::internal::CaptureStderr();
    EXPECT_EQ(row(odd, PixelFormat::Grey8), (Colours{kWhite, kWhite}));
    odd->depth = 24;
    EXPECT_EQ(row(odd, PixelFormat::Grey8), (Colours{kWhite, kWhite}));
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(said.rfind("colour: ", 0), 0U);
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 2);
}

TEST(Bitmap, TurnsClockwise) {
    const BitmapPtr picture = bitmapOf(3, 2, 8, {1, 2, 3, 4, 5, 6});
    const auto turned = [&](int turns) {
        const BitmapPtr result = rotateBitmap(*picture, turns);
        const std::uint8_t* first = bitmap_pixels(result.get());
        std::vector<int> all{result->width, result->height};
        all.insert(all.end(), first, first + pixelBytes(*result));
        return all;
    };
    EXPECT_EQ(turned(0), (std::vector<int>{3, 2, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(turned(1), (std::vector<int>{2, 3, 4, 1, 5, 2, 6, 3}));
    EXPECT_EQ(turned(2), (std::vector<int>{3, 2, 6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(turned(3), (std::vector<int>{2, 3, 3, 6, 2, 5, 1, 4}));
}

TEST(Bitmap, TurnsOfEveryDepthShowTheSamePicture) {
    for (const int depth : {1, 4, 8, 24, 32}) {
        BitmapPtr picture = makeBitmap(11, 5, depth);
        for (std::size_t i = 0; i < pixelBytes(*picture); ++i) {
            bitmap_pixels(picture.get())[i] = static_cast<std::uint8_t>(i * 73 + 19);
        }
        const BitmapPtr turned = rotateBitmap(*picture, 1);
        Screen before({11, 5}, PixelFormat::Rgb24);
        Screen after({5, 11}, PixelFormat::Rgb24);
        before.draw({0, 0}, *picture);
        after.draw({0, 0}, *turned);
        for (int y = 0; y < 5; ++y) {
            for (int x = 0; x < 11; ++x) {
                EXPECT_EQ(colourAt(before.pixels(), x, y), colourAt(after.pixels(), 4 - y, x)) << depth;
            }
        }
    }
    const BitmapPtr wide = makeBitmap(65535, 1, 1);
    EXPECT_NE(rotateBitmap(*wide, 1), nullptr);
    EXPECT_EQ(rotateBitmap(*makeBitmap(1, 40000, 24), 1), nullptr) << "its row would not fit a record";
}

TEST(Png, HoldsEveryPixel) {
    const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "screen.png";
    for (const PixelFormat format : {PixelFormat::Grey8, PixelFormat::Rgb24}) {
        Framebuffer pixels({47, 33}, format);
        for (int y = 0; y < 33; ++y) {
            for (std::size_t i = 0; i < pixels.stride(); ++i) {
                pixels.at(0, y)[i] = static_cast<std::uint8_t>(i * 31 + static_cast<std::size_t>(y) * 7);
            }
        }
        std::string error;
        ASSERT_TRUE(writePng(file, pixels, error)) << error;
        SDL_Surface* loaded = IMG_Load(file.c_str());
        ASSERT_NE(loaded, nullptr);
        SDL_Surface* colours = SDL_ConvertSurfaceFormat(loaded, SDL_PIXELFORMAT_RGB24, 0);
        ASSERT_EQ(colours->w, 47);
        ASSERT_EQ(colours->h, 33);
        for (int y = 0; y < 33; ++y) {
            for (int x = 0; x < 47; ++x) {
                const std::uint8_t* p = static_cast<const std::uint8_t*>(colours->pixels) + y * colours->pitch + 3 * x;
                ASSERT_EQ(p[0] << 16 | p[1] << 8 | p[2], colourAt(pixels, x, y));
            }
        }
        SDL_FreeSurface(colours);
        SDL_FreeSurface(loaded);
    }
    std::filesystem::remove(file);
    std::string error;
    EXPECT_FALSE(writePng("/nowhere/at/all.png", Framebuffer({2, 2}, PixelFormat::Grey8), error));
    EXPECT_NE(error.find("/nowhere/at/all.png"), std::string::npos);
    EXPECT_FALSE(writePng("/dev/full", Framebuffer({200, 200}, PixelFormat::Rgb24), error));
}

}  // namespace
}  // namespace host
