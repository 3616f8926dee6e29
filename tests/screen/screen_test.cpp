#include "platform/host/screen/screen.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

#include "screen/pixels.h"

namespace host {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();
constexpr Size kSmall{13, 9};
constexpr int kRounds = 1000;

class AnyFormat : public testing::TestWithParam<PixelFormat> {
protected:
    std::mt19937 random{11};
    int upTo(int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); }

    /// Coordinates and sizes that a careless caller may pass.
    int anyNumber() {
        static constexpr int kSpecial[] = {kLeast, kLeast + 1, -100000, -1, 0, 1, 12, 13, 14, 100000, kMost - 1, kMost};
        return upTo(2) == 0 ? kSpecial[upTo(11)] : upTo(40) - 14;
    }
    Rgb anyColour() { return upTo(0xFFFFFF); }
    std::uint8_t anyByte() { return static_cast<std::uint8_t>(upTo(255)); }

    BitmapPtr anyBitmap(int depth) {
        BitmapPtr bitmap = makeBitmap(1 + upTo(19), 1 + upTo(19), depth);
        std::generate_n(bitmap_pixels(bitmap.get()), pixelBytes(*bitmap), [this] { return anyByte(); });
        return bitmap;
    }
};
INSTANTIATE_TEST_SUITE_P(Screen, AnyFormat, testing::Values(PixelFormat::Grey8, PixelFormat::Rgb24));

TEST_P(AnyFormat, FillsAndCapturesMatchPixelByPixel) {
    for (int i = 0; i < kRounds; ++i) {
        Screen screen(kSmall, GetParam());
        const Rect area{anyNumber(), anyNumber(), anyNumber(), anyNumber()};
        const Rgb colour = anyColour();
        const Rgb seen = GetParam() == PixelFormat::Grey8 ? luminance(toneOf(colour)) * 0x010101 : colour;
        screen.fill(area, colour);
        for (const Point at : everyPixel(kSmall)) {
            ASSERT_EQ(colourAt(screen.pixels(), at), area.contains(at) ? seen : kWhite);
        }
        const Rect part{upTo(40) - 20, upTo(40) - 20, upTo(30), upTo(30)};
        const BitmapPtr copy = screen.capture(part);
        ASSERT_EQ(copy == nullptr, part.empty());
        for (const Point at : everyPixel(part.empty() ? Size{} : part.size())) {
            const Point from{part.x + at.x, part.y + at.y};
            const int expected = screen.pixels().bounds().contains(from) ? *screen.pixels().at(from.x, from.y) : 255;
            ASSERT_EQ(bitmapRow(*copy, at.y)[at.x * screen.pixels().bytesPerPixel()], expected);
        }
    }
    EXPECT_EQ(Screen(kSmall, GetParam()).capture({0, 0, kMost, kMost}), nullptr);
}

TEST_P(AnyFormat, ATintIsTheBlendOfEachPixel) {
    constexpr Size kWide{60, 2};
    std::vector<std::uint8_t> mask(40 * 2);
    for (int i = 0; i < kRounds; ++i) {
        Screen screen(kWide, GetParam());
        for (const Point at : everyPixel(kWide)) screen.pixel(at, anyColour());
        for (std::uint8_t& amount : mask) amount = upTo(1) == 0 ? 0 : anyByte();
        const Framebuffer before = screen.pixels();
        const Rgb colour = anyColour();
        const Tone tone = toneOf(colour);
        const bool grey = GetParam() == PixelFormat::Grey8;
        const std::uint8_t bytes[] = {grey ? luminance(tone) : tone.red, tone.green, tone.blue};
        const Rect box{upTo(20), 0, 40, 2};
        const Rect clip{upTo(40), 0, upTo(40), 2};
        screen.tint({box.x, 0}, {mask.data(), 40, box.size()}, clip, colour);
        for (const Point at : everyPixel(kWide)) {
            const bool tinted = clip.contains(at) && box.contains(at);
            const int amount = tinted ? mask[static_cast<std::size_t>(at.y * 40 + at.x - box.x)] : 0;
            for (int k = 0; k < before.bytesPerPixel(); ++k) {
                ASSERT_EQ(screen.pixels().at(at.x, at.y)[k], blend(before.at(at.x, at.y)[k], bytes[k], amount));
            }
        }
    }
}

TEST_P(AnyFormat, ASmallScreenShowsItsPartOfALargeOne) {
    constexpr int kMargin = 50;
    constexpr int kDepths[] = {1, 4, 8, 24, 32};
    std::vector<std::uint8_t> mask(17 * 30);
    for (std::uint8_t& byte : mask) byte = anyByte();
    for (int i = 0; i < kRounds; ++i) {
        const Point at{upTo(70) - 35, upTo(70) - 35};
        const Point end{upTo(70) - 35, upTo(70) - 35};
        const Rgb colour = anyColour();
        const Rect clip{upTo(20) - 5, upTo(20) - 5, upTo(20), upTo(20)};
        const BitmapPtr bitmap = anyBitmap(kDepths[i % 5]);
        const Frame frame{{at.x, at.y, upTo(50), upTo(50)}, upTo(12), upTo(15), upTo(31), upTo(20), colour};
        const auto drawn = [&](int margin) {
            Screen screen({kSmall.w + 2 * margin, kSmall.h + 2 * margin}, GetParam());
            const Point from{at.x + margin, at.y + margin};
            screen.line(from, {end.x + margin, end.y + margin}, colour);
            screen.draw(from, *bitmap);
            Frame moved = frame;
            moved.box = {from.x, from.y, frame.box.w, frame.box.h};
            screen.frame(moved);
            screen.tint(from, {mask.data(), 17, {15, 30}}, {clip.x + margin, clip.y + margin, clip.w, clip.h}, colour);
            return screen.pixels();
        };
        ASSERT_EQ(firstDifference(drawn(0), drawn(kMargin), 0, kMargin), kNowhere) << i;
    }
}

TEST_P(AnyFormat, NoValueIsTooLarge) {
    const BitmapPtr bitmap = anyBitmap(32);
    const std::vector<std::uint8_t> mask(25, 200);
    for (int i = 0; i < kRounds; ++i) {
        Screen screen(kSmall, GetParam());
        const Rect box{anyNumber(), anyNumber(), anyNumber(), anyNumber()};
        screen.line({box.x, box.y}, {box.w, box.h}, anyColour());
        screen.pixel({box.x, box.y}, anyColour());
        screen.draw({box.x, box.y}, *bitmap);
        screen.tint({box.x, box.y}, {mask.data(), 5, {5, 5}}, {box.y, box.x, box.h, box.w}, anyColour());
        screen.frame({box, anyNumber(), upTo(15), upTo(31), anyNumber(), anyColour()});
        if (const Rect all{box.x, box.y, 3, 3}; all.intersected(screen.pixels().bounds()).empty()) {
            ASSERT_EQ(*bitmap_pixels(screen.capture(all).get()), 255);
        }
    }
}

TEST(Line, HoldsBothEndsAndOnePixelAStep) {
    std::mt19937 random(3);
    const auto place = [&] { return static_cast<int>(random() % 41); };
    for (int i = 0; i < kRounds; ++i) {
        Screen screen({41, 41}, PixelFormat::Grey8);
        const Point from{place(), place()};
        const Point to{place(), place()};
        screen.line(from, to, kBlack);
        const Framebuffer& pixels = screen.pixels();
        const double dx = to.x - from.x;
        const double dy = to.y - from.y;
        const double steps = std::max(std::abs(dx), std::abs(dy));
        ASSERT_EQ(darknessAt(pixels, from) + darknessAt(pixels, to), 2 * 255);
        ASSERT_EQ(totalDarkness(pixels), steps + 1);
        for (const Point at : everyPixel({41, 41})) {
            const double off = std::abs((at.x - from.x) * dy - (at.y - from.y) * dx);
            ASSERT_TRUE(darknessAt(pixels, at) == 0 || off <= steps / 2) << "more than half a pixel off";
        }
    }
}

TEST(Line, FromFarOutsideCrossesWhereItShould) {
    Screen screen({100, 100}, PixelFormat::Grey8);
    screen.line({kLeast, kLeast}, {kMost, kMost}, kBlack);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(darknessAt(screen.pixels(), {i, i}), 255);
    screen.line({50, kLeast}, {50, kMost}, kBlack);
    EXPECT_EQ(totalDarkness(screen.pixels()), 199);
}

}  // namespace
}  // namespace host
