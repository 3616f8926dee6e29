#include <gtest/gtest.h>

#include <initializer_list>

#include "platform/host/screen/screen.h"
#include "screen/pixels.h"

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

}  // namespace
}  // namespace host
