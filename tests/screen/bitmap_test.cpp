#include <gtest/gtest.h>

#include <initializer_list>

#include "platform/host/files/picture_file.h"
#include "platform/host/screen/png_writer.h"
#include "platform/host/screen/screen.h"
#include "screen/pixels.h"
#include "support/temporary_folder.h"

namespace host {
namespace {

using Colours = std::vector<Rgb>;

BitmapPtr rowOf(int width, int depth, std::initializer_list<int> bytes) {
    BitmapPtr bitmap = makeBitmap(width, 1, depth);
    EXPECT_EQ(pixelBytes(*bitmap), bytes.size());
    std::copy(bytes.begin(), bytes.end(), bitmap_pixels(bitmap.get()));
    return bitmap;
}

Colours shown(const BitmapPtr& row, PixelFormat format, Rgb paper = kWhite) {
    const Size size{row->width, 1};
    Screen screen(size, format);
    screen.fill({0, 0, size.w, 1}, paper);
    screen.draw({0, 0}, *row);
    Colours colours;
    for (const Point at : everyPixel(size)) colours.push_back(colourAt(screen.pixels(), at));
    return colours;
}

TEST(Bitmap, EveryDepthShowsItsColours) {
    const BitmapPtr colours = rowOf(3, 24, {255, 0, 0, 0, 255, 0, 1, 2, 3});
    const BitmapPtr alphas = rowOf(3, 32, {255, 0, 0, 255, 255, 0, 0, 0, 0, 0, 255, 128});
    for (const PixelFormat format : {PixelFormat::Grey8, PixelFormat::Rgb24}) {
        EXPECT_EQ(shown(rowOf(10, 1, {0b10100001, 0b01111111}), format),
                  (Colours{kWhite, 0, kWhite, 0, 0, 0, 0, kWhite, 0, kWhite}));
        EXPECT_EQ(shown(rowOf(3, 4, {0x0F, 0x7F}), format), (Colours{0, kWhite, 0x777777}));
        EXPECT_EQ(shown(rowOf(3, 8, {0, 100, 255}), format), (Colours{0, 0x646464, kWhite}));
    }
    EXPECT_EQ(shown(colours, PixelFormat::Rgb24), (Colours{0xFF0000, 0x00FF00, 0x010203}));
    EXPECT_EQ(shown(colours, PixelFormat::Grey8), (Colours{0x4C4C4C, 0x969696, 0x020202}));
    EXPECT_EQ(shown(alphas, PixelFormat::Rgb24), (Colours{0xFF0000, kWhite, 0x7F7FFF}));
    EXPECT_EQ(shown(alphas, PixelFormat::Rgb24, kBlack), (Colours{0xFF0000, kBlack, 0x000080}));
    EXPECT_EQ(shown(alphas, PixelFormat::Grey8), (Colours{0x4C4C4C, kWhite, 0x8E8E8E}));
}

TEST(Bitmap, BadRecordsDrawNothingAndSaySo) {
    const BitmapPtr odd = rowOf(2, 8, {0, 0});
    for (const int depth : {7, 24}) {
        odd->depth = static_cast<std::uint16_t>(depth);
        testing::internal::CaptureStderr();
        EXPECT_EQ(shown(odd, PixelFormat::Grey8), (Colours{kWhite, kWhite}));
        EXPECT_EQ(testing::internal::GetCapturedStderr().rfind("colour: ", 0), 0U);
    }
}

TEST(Bitmap, TurnsClockwiseInEveryDepth) {
    constexpr Size kSize{11, 5};
    for (const int depth : {1, 4, 8, 24, 32}) {
        const BitmapPtr picture = makeBitmap(kSize.w, kSize.h, depth);
        for (std::size_t i = 0; i < pixelBytes(*picture); ++i) {
            bitmap_pixels(picture.get())[i] = static_cast<std::uint8_t>(i * 73 + 19);
        }
        Screen before(kSize, PixelFormat::Rgb24);
        before.draw({0, 0}, *picture);
        for (const int turns : {0, 1, 2, 3}) {
            const BitmapPtr turned = rotateBitmap(*picture, turns);
            Screen after({turned->width, turned->height}, PixelFormat::Rgb24);
            after.draw({0, 0}, *turned);
            for (const Point at : everyPixel(kSize)) {
                const Point places[] = {at,
                                        {kSize.h - 1 - at.y, at.x},
                                        {kSize.w - 1 - at.x, kSize.h - 1 - at.y},
                                        {at.y, kSize.w - 1 - at.x}};
                ASSERT_EQ(colourAt(before.pixels(), at), colourAt(after.pixels(), places[turns])) << depth;
            }
        }
    }
    EXPECT_NE(rotateBitmap(*makeBitmap(65535, 1, 1), 1), nullptr);
    EXPECT_EQ(rotateBitmap(*makeBitmap(1, 40000, 24), 1), nullptr) << "its row would not fit a record";
}

TEST(Png, HoldsEveryPixel) {
    const TemporaryFolder folder;
    const std::string file = folder.path() / "screen.png";
    std::string error;
    for (const PixelFormat format : {PixelFormat::Grey8, PixelFormat::Rgb24}) {
        Framebuffer pixels({47, 33}, format);
        for (std::size_t i = 0; i < 33 * pixels.stride(); ++i) pixels.at(0, 0)[i] = static_cast<std::uint8_t>(i * 31);
        ASSERT_TRUE(writePng(file, pixels, error)) << error;
        Screen read({47, 33}, format);
        read.draw({0, 0}, *loadPicture(file, error));
        EXPECT_EQ(read.pixels(), pixels);
    }
    EXPECT_FALSE(writePng("/nowhere/at/all.png", Framebuffer({2, 2}, PixelFormat::Grey8), error));
    EXPECT_NE(error.find("/nowhere/at/all.png"), std::string::npos);
    EXPECT_FALSE(writePng("/dev/full", Framebuffer({200, 200}, PixelFormat::Rgb24), error));
}

}  // namespace
}  // namespace host
