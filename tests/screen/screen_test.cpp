#include "platform/host/screen/screen.h"

#include <gtest/gtest.h>

#include <climits>
#include <numbers>
#include <random>

#include "screen/pixels.h"

namespace host {
namespace {

using Colours = std::vector<Rgb>;

/// What a row of pixels of those bytes shows on a panel's paper.
Colours shown(int width, int depth, const std::vector<int>& bytes, PixelFormat format, Rgb paper = kWhite) {
    const BitmapPtr row = makeBitmap(width, 1, depth);
    EXPECT_EQ(pixelBytes(*row), bytes.size());
    std::copy(bytes.begin(), bytes.end(), bitmap_pixels(row.get()));
    Screen screen({width, 1}, format);
    screen.fill(screen.pixels().bounds(), paper);
    screen.draw({0, 0}, *row);
    Colours colours;
    for (const Point at : everyPixel({width, 1})) colours.push_back(colourAt(screen.pixels(), at));
    return colours;
}

TEST(Bitmap, EveryDepthShowsItsColours) {
    constexpr auto kGrey = PixelFormat::Grey8, kColour = PixelFormat::Rgb24;
    const std::vector<int> colours{255, 0, 0, 0, 255, 0, 1, 2, 3}, alphas{255, 0, 0, 255, 255, 0, 0, 0, 0, 0, 255, 128};
    for (const PixelFormat format : {kGrey, kColour}) {
        EXPECT_EQ(shown(10, 1, {0b10100001, 0b01111111}, format),
                  (Colours{kWhite, 0, kWhite, 0, 0, 0, 0, kWhite, 0, kWhite}));
        EXPECT_EQ(shown(3, 4, {0x0F, 0x7F}, format), (Colours{0, kWhite, 0x777777}));
        EXPECT_EQ(shown(3, 8, {0, 100, 255}, format), (Colours{0, 0x646464, kWhite}));
    }
    EXPECT_EQ(shown(3, 24, colours, kColour), (Colours{0xFF0000, 0x00FF00, 0x010203}));
    EXPECT_EQ(shown(3, 24, colours, kGrey), (Colours{0x4C4C4C, 0x969696, 0x020202}));
    EXPECT_EQ(shown(3, 32, alphas, kColour), (Colours{0xFF0000, kWhite, 0x7F7FFF}));
    EXPECT_EQ(shown(3, 32, alphas, kColour, kBlack), (Colours{0xFF0000, kBlack, 0x000080}));
    EXPECT_EQ(shown(3, 32, alphas, kGrey), (Colours{0x4C4C4C, kWhite, 0x8E8E8E}));
}

constexpr int kAllAndInside = 15 | kFilled;

/// Of a black frame on white, in pixels.
double inkOf(const Frame& frame) {
    Screen screen({240, 240}, PixelFormat::Grey8);
    screen.frame(frame);
    double sum = 0;
    for (const auto [x, y] : everyPixel({240, 240})) sum += 1 - *screen.pixels().at(x, y) / 255.0;
    return sum;
}

TEST(Frame, HasTheAreaOfItsShape) {
    const auto discArea = [](double r) { return std::numbers::pi * r * r; };
    for (const int r : {1, 2, 3, 5, 8, 20, 33, 100}) {
        const Rect box{10, 10, 2 * r, 2 * r};
        const double disc = discArea(r), ring = disc - discArea(r - 1);
        for (const int parts : {15, kAllAndInside})  // half the box thick fills it
            EXPECT_NEAR(inkOf({box, r, 15, parts, r}), disc, 0.01 * disc) << r;
        EXPECT_NEAR(inkOf({box, 1, 15, 15, r}), ring, 0.01 * ring + 0.1) << r;
    }
    EXPECT_NEAR(inkOf({{10, 10, 128, 8}, 8, 15, kAllAndInside, 4}), 120 * 8 + discArea(4), 0.3);
    const double corners = discArea(20) - discArea(14);
    EXPECT_NEAR(inkOf({{10, 10, 200, 120}, 6, 15, 15, 20}), 2 * 6 * (160 + 80) + corners, 1);
    EXPECT_EQ(inkOf({{10, 10, 40, 30}, 0, 15, 15, 8}), 0);
}

constexpr Size kSmall{13, 9};
constexpr int kRounds = 1000;

struct AnyFormat : testing::TestWithParam<PixelFormat> {
    std::mt19937 random{11};
    int upTo(int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); }
    int anyNumber() {
        constexpr int kSpecial[] = {INT_MIN, INT_MIN + 1, -100000, 100000, INT_MAX - 1, INT_MAX};
        return upTo(3) == 0 ? kSpecial[upTo(5)] : upTo(40) - 14;
    }
    BitmapPtr anyBitmap(int depth) {
        BitmapPtr bitmap = makeBitmap(1 + upTo(19), 1 + upTo(19), depth);
        std::generate_n(bitmap_pixels(bitmap.get()), pixelBytes(*bitmap), [this] { return upTo(255); });
        return bitmap;
    }
};
Coverage coverageOf(const bitmap_s& mask) { return {bitmap_pixels(&mask), mask.scanline, {mask.width, mask.height}}; }
INSTANTIATE_TEST_SUITE_P(Screen, AnyFormat, testing::Values(PixelFormat::Grey8, PixelFormat::Rgb24));

TEST_P(AnyFormat, ASmallScreenShowsItsPartOfALargeOne) {
    constexpr int kMargin = 50;
    constexpr int kDepths[] = {1, 4, 8, 24, 32};
    for (int i = 0; i < kRounds; ++i) {
        const Point at{upTo(70) - 35, upTo(70) - 35}, end{upTo(70) - 35, upTo(70) - 35};
        const Rect clip{upTo(20) - 5, upTo(20) - 5, upTo(20), upTo(20)};
        const BitmapPtr bitmap = anyBitmap(kDepths[i % 5]), mask = anyBitmap(8);
        Frame frame{{0, 0, upTo(50), upTo(50)}, upTo(12), upTo(15), upTo(31), upTo(20), upTo(0xFFFFFF)};
        const auto drawn = [&](int margin) {
            Screen screen({kSmall.w + 2 * margin, kSmall.h + 2 * margin}, GetParam());
            const Point from{at.x + margin, at.y + margin};
            const Rect moved{clip.x + margin, clip.y + margin, clip.w, clip.h};
            screen.line(from, {end.x + margin, end.y + margin}, frame.colour);
            screen.draw(from, *bitmap);
            frame.box = {from.x, from.y, frame.box.w, frame.box.h};
            screen.frame(frame);
            screen.tint(from, coverageOf(*mask), moved, frame.colour);
            return screen.pixels();
        };
        ASSERT_EQ(firstDifference(drawn(0), drawn(kMargin), 0, kMargin), kNowhere) << i;
    }
}

TEST_P(AnyFormat, NoValueIsTooLarge) {
    const BitmapPtr bitmap = anyBitmap(32), mask = anyBitmap(8);
    for (int i = 0; i < kRounds; ++i) {
        Screen screen(kSmall, GetParam());
        const Rect box{anyNumber(), anyNumber(), anyNumber(), anyNumber()};
        const Point at{box.x, box.y};
        screen.line(at, {box.w, box.h}, kBlack);
        screen.pixel(at, kBlack);
        screen.draw(at, *bitmap);
        screen.tint(at, coverageOf(*mask), {box.y, box.x, box.h, box.w}, kBlack);
        screen.frame({box, anyNumber(), upTo(15), upTo(31), anyNumber(), kBlack});
        const Rect some{at.x, at.y, 3, 3};
        const BitmapPtr captured = screen.capture(some);
        ASSERT_TRUE(*bitmap_pixels(captured.get()) == 255 || !some.intersected(screen.pixels().bounds()).empty());
    }
}

}  // namespace
}  // namespace host
