#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "pixels.h"
#include "platform/host/screen/screen.h"

namespace host {
namespace {

constexpr int kAllAndInside = 15 | kFilled;

Screen framed(const Frame& frame, Size size = {240, 240}) {
    Screen screen(size, PixelFormat::Grey8);
    screen.frame(frame);
    return screen;
}

TEST(Frame, IsItsOwnMirrorImage) {
    for (const int w : {1, 2, 3, 7, 8, 21, 64}) {
        for (const int h : {w, 9, 30}) {
            for (const int thickness : {1, 2, 4, 30}) {
                for (const int radius : {0, 1, 4, 10, 100}) {
                    for (const int corners : {15, kAllAndInside}) {
                        const Screen screen = framed({{3, 5, w, h}, thickness, 15, corners, radius}, {70, 70});
                        for (int y = 0; y < 70; ++y) {
                            for (int x = 0; x < 70; ++x) {
                                const bool inside = x >= 3 && x < 3 + w && y >= 5 && y < 5 + h;
                                const int darkness = darknessAt(screen.pixels(), x, y);
                                if (!inside) {
                                    ASSERT_EQ(darkness, 0);
                                    continue;
                                }
                                ASSERT_EQ(darkness, darknessAt(screen.pixels(), 2 * 3 + w - 1 - x, y));
                                ASSERT_EQ(darkness, darknessAt(screen.pixels(), x, 2 * 5 + h - 1 - y));
                                if (w == h) {
                                    ASSERT_EQ(darkness, darknessAt(screen.pixels(), y - 2, x + 2));
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}

TEST(Frame, HasTheAreaOfItsShape) {
    const auto discArea = [](double r) { return std::numbers::pi * r * r; };
    for (const int r : {1, 2, 3, 5, 8, 20, 33, 100}) {
        const Rect box{10, 10, 2 * r, 2 * r};
        const double disc = totalDarkness(framed({box, r, 15, kAllAndInside, r}).pixels());
        EXPECT_NEAR(disc, discArea(r), 0.01 * discArea(r)) << r;
        EXPECT_EQ(
            firstDifference(framed({box, r, 15, kAllAndInside, r}).pixels(), framed({box, r, 15, 15, r}).pixels()),
            kNowhere)
            << "as thick as half the box is filled too";
        const double ring = totalDarkness(framed({box, 1, 15, 15, r}).pixels());
        EXPECT_NEAR(ring, discArea(r) - discArea(r - 1), 0.01 * ring + 0.1) << r;
    }
    const double bar = totalDarkness(framed({{10, 10, 128, 8}, 8, 15, kAllAndInside, 4}).pixels());
    EXPECT_NEAR(bar, 120 * 8 + discArea(4), 0.3);
    const double panel = totalDarkness(framed({{10, 10, 200, 120}, 6, 15, 15, 20}).pixels());
    EXPECT_NEAR(panel, 2 * 6 * (160 + 80) + discArea(20) - discArea(14), 1);
}

TEST(Frame, LeavesOutSidesAndCorners) {
    const Frame whole{{10, 10, 40, 30}, 3, 15, 15, 8};
    Frame open = whole;
    open.sides = kLeftSide | kTopSide | kBottomSide;
    const Screen screen = framed(open);
    EXPECT_EQ(darknessAt(screen.pixels(), 49, 25), 0);
    EXPECT_EQ(darknessAt(screen.pixels(), 10, 25), 255);
    EXPECT_EQ(darknessAt(screen.pixels(), 49, 10), 255) << "a side without a neighbour runs to the edge";
    EXPECT_EQ(darknessAt(screen.pixels(), 10, 10), 0) << "other corners stay round";
    Frame square = whole;
    square.corners = kTopLeftCorner | kBottomLeftCorner;
    EXPECT_EQ(darknessAt(framed(square).pixels(), 49, 10), 255);
    EXPECT_EQ(darknessAt(framed(square).pixels(), 10, 10), 0);
    EXPECT_EQ(totalDarkness(framed({{10, 10, 40, 30}, 0, 15, 15, 8}).pixels()), 0);
}

}  // namespace
}  // namespace host
