#include "platform/host/screen/screen.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

#include "screen/pixels.h"

namespace host {
namespace {

constexpr Size kSmall{13, 9};
constexpr int kRounds = 1000;
constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();

class AnyFormat : public testing::TestWithParam<PixelFormat> {
protected:
    std::mt19937 random{11};
    int upTo(int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); }
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

}  // namespace
}  // namespace host
