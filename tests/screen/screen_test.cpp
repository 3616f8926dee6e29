#include "platform/host/screen/screen.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

#include "pixels.h"

namespace host {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();

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

    BitmapPtr anyBitmap(int depth) {
        BitmapPtr bitmap = makeBitmap(1 + upTo(19), 1 + upTo(19), depth);
        for (std::size_t i = 0; i < pixelBytes(*bitmap); ++i) {
            bitmap_pixels(bitmap.get())[i] = static_cast<std::uint8_t>(upTo(255));
        }
        return bitmap;
    }
};
INSTANTIATE_TEST_SUITE_P(Screen, AnyFormat, testing::Values(PixelFormat::Grey8, PixelFormat::Rgb24));

TEST_P(AnyFormat, FillsAndCapturesMatchPixelByPixel) {
    for (int i = 0; i < 1000; ++i) {
        Screen screen({13, 9}, GetParam());
        const Rect area{anyNumber(), anyNumber(), anyNumber(), anyNumber()};
        const Rgb colour = anyColour();
        const Tone tone = toneOf(colour);
        const Rgb shown = GetParam() == PixelFormat::Grey8 ? luminance(tone) * 0x010101 : colour;
        screen.fill(area, colour);
        for (int y = 0; y < 9; ++y) {
            for (int x = 0; x < 13; ++x) {
                ASSERT_EQ(colourAt(screen.pixels(), x, y), area.contains({x, y}) ? shown : kWhite);
            }
        }
        const Rect seen{upTo(40) - 20, upTo(40) - 20, upTo(30), upTo(30)};
        const BitmapPtr copy = screen.capture(seen);
        ASSERT_EQ(copy == nullptr, seen.empty());
        for (int y = 0; !seen.empty() && y < seen.h; ++y) {
            for (int x = 0; x < seen.w; ++x) {
                const Point at{seen.x + x, seen.y + y};
                const int bytes = screen.pixels().bytesPerPixel();
                const int expected = screen.pixels().bounds().contains(at) ? *screen.pixels().at(at.x, at.y) : 255;
                ASSERT_EQ(bitmapRow(*copy, y)[x * bytes], expected);
            }
        }
    }
}

TEST_P(AnyFormat, ASmallScreenShowsItsPartOfALargeOne) {
    constexpr int kMargin = 50;
    constexpr int kDepths[] = {1, 4, 8, 24, 32};
    const std::vector<std::uint8_t> mask = [&] {
        std::vector<std::uint8_t> bytes(17 * 30);
        for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(upTo(255));
        return bytes;
    }();
    for (int i = 0; i < 1000; ++i) {
        Screen small({13, 9}, GetParam());
        Screen large({13 + 2 * kMargin, 9 + 2 * kMargin}, GetParam());
        const Point at{upTo(70) - 35, upTo(70) - 35};
        const Point far{at.x + kMargin, at.y + kMargin};
        const Point end{upTo(70) - 35, upTo(70) - 35};
        const Rgb colour = anyColour();
        const Rect clip{upTo(20) - 5, upTo(20) - 5, upTo(20), upTo(20)};
        const Rect farClip{clip.x + kMargin, clip.y + kMargin, clip.w, clip.h};
        const BitmapPtr bitmap = anyBitmap(kDepths[i % 5]);
        Frame frame{{at.x, at.y, upTo(50), upTo(50)}, upTo(12), upTo(15), upTo(31), upTo(20), colour};
        small.line(at, end, colour);
        large.line(far, {end.x + kMargin, end.y + kMargin}, colour);
        small.draw(at, *bitmap);
        large.draw(far, *bitmap);
        small.frame(frame);
        frame.box = {far.x, far.y, frame.box.w, frame.box.h};
        large.frame(frame);
        small.tint(at, {mask.data(), 17, {15, 30}}, clip, colour);
        large.tint(far, {mask.data(), 17, {15, 30}}, farClip, colour);
        for (int y = 0; y < 9; ++y) {
            for (int x = 0; x < 13; ++x) {
                ASSERT_EQ(colourAt(small.pixels(), x, y), colourAt(large.pixels(), x + kMargin, y + kMargin)) << i;
            }
        }
    }
}

TEST_P(AnyFormat, NoValueIsTooLarge) {
    const BitmapPtr bitmap = anyBitmap(32);
    const std::vector<std::uint8_t> mask(25, 200);
    for (int i = 0; i < 1000; ++i) {
        Screen screen({13, 9}, GetParam());
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
    EXPECT_EQ(Screen({13, 9}, GetParam()).capture({0, 0, kMost, kMost}), nullptr);
}

TEST(Line, HoldsBothEndsAndOnePixelAStep) {
    std::mt19937 random(3);
    const auto place = [&] { return static_cast<int>(random() % 41); };
    for (int i = 0; i < 1000; ++i) {
        Screen screen({41, 41}, PixelFormat::Grey8);
        Screen back({41, 41}, PixelFormat::Grey8);
        const Point from{place(), place()};
        const Point to{place(), place()};
        screen.line(from, to, kBlack);
        back.line(to, from, kBlack);
        ASSERT_EQ(firstDifference(screen.pixels(), back.pixels()), kNowhere);
        ASSERT_EQ(darknessAt(screen.pixels(), from.x, from.y), 255);
        ASSERT_EQ(darknessAt(screen.pixels(), to.x, to.y), 255);
        const double dx = to.x - from.x;
        const double dy = to.y - from.y;
        const double steps = std::max(std::abs(dx), std::abs(dy));
        ASSERT_EQ(totalDarkness(screen.pixels()), steps + 1);
        for (int y = 0; y < 41; ++y) {
            for (int x = 0; x < 41; ++x) {
                if (darknessAt(screen.pixels(), x, y) == 0 || steps == 0) continue;
                ASSERT_LE(std::abs((x - from.x) * dy - (y - from.y) * dx), steps / 2) << "more than half a pixel off";
            }
        }
    }
}

TEST(Line, FromFarOutsideCrossesWhereItShould) {
    Screen screen({100, 100}, PixelFormat::Grey8);
    screen.line({kLeast, kLeast}, {kMost, kMost}, kBlack);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(darknessAt(screen.pixels(), i, i), 255);
    EXPECT_EQ(totalDarkness(screen.pixels()), 100);
    screen.line({50, kLeast}, {50, kMost}, kBlack);
    EXPECT_EQ(totalDarkness(screen.pixels()), 199);
}

TEST(Tint, LaysTheColourByItsCoverage) {
    Screen screen({3, 1}, PixelFormat::Rgb24);
    const std::uint8_t mask[] = {0, 128, 255};
    screen.tint({0, 0}, {mask, 3, {3, 1}}, {0, 0, 3, 1}, 0xFF0000);
    EXPECT_EQ(colourAt(screen.pixels(), 0, 0), kWhite);
    EXPECT_EQ(colourAt(screen.pixels(), 1, 0), 0xFF7F7F);
    EXPECT_EQ(colourAt(screen.pixels(), 2, 0), 0xFF0000);
}

}  // namespace
}  // namespace host
