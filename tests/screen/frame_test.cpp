#include <gtest/gtest.h>

#include <numbers>

#include "platform/host/screen/screen.h"
#include "screen/pixels.h"

namespace host {
namespace {

constexpr int kAllAndInside = 15 | kFilled;

Framebuffer framed(const Frame& frame, Size size = {240, 240}) {
    Screen screen(size, PixelFormat::Grey8);
    screen.frame(frame);
    return screen.pixels();
}

class FrameShapes : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Corners, FrameShapes, testing::Values(15, kAllAndInside));

TEST_P(FrameShapes, AreTheirOwnMirrorImages) {
    const std::vector<Size> sizes{{1, 1}, {1, 9},   {2, 2},   {3, 3},  {7, 9},
                                  {8, 8}, {21, 21}, {21, 30}, {64, 9}, {64, 64}};
    for (const Size size : sizes) {
        const Rect box{3, 5, size.w, size.h};
        const int right = 2 * box.x + size.w - 1;
        const int bottom = 2 * box.y + size.h - 1;
        for (const auto& [thickness, radius] : std::vector<std::pair<int, int>>{
                 {1, 0}, {1, 4}, {1, 100}, {2, 1}, {2, 10}, {4, 0}, {4, 4}, {4, 10}, {30, 1}, {30, 100}}) {
            const Framebuffer pixels = framed({box, thickness, 15, GetParam(), radius}, {70, 70});
            for (const Point at : everyPixel({70, 70})) {
                const int darkness = darknessAt(pixels, at);
                if (!box.contains(at)) {
                    ASSERT_EQ(darkness, 0);
                    continue;
                }
                ASSERT_EQ(darkness, darknessAt(pixels, {right - at.x, at.y}));
                ASSERT_EQ(darkness, darknessAt(pixels, {at.x, bottom - at.y}));
                const Point across = size.w == size.h ? Point{at.y - 2, at.x + 2} : at;
                ASSERT_EQ(darkness, darknessAt(pixels, across));
            }
        }
    }
}

TEST(Frame, HasTheAreaOfItsShape) {
    const auto discArea = [](double r) { return std::numbers::pi * r * r; };
    for (const int r : {1, 2, 3, 5, 8, 20, 33, 100}) {
        const Rect box{10, 10, 2 * r, 2 * r};
        const Framebuffer disc = framed({box, r, 15, kAllAndInside, r});
        EXPECT_NEAR(totalDarkness(disc), discArea(r), 0.01 * discArea(r)) << r;
        EXPECT_EQ(disc, framed({box, r, 15, 15, r})) << "as thick as half the box is filled too";
        const double ring = totalDarkness(framed({box, 1, 15, 15, r}));
        EXPECT_NEAR(ring, discArea(r) - discArea(r - 1), 0.01 * ring + 0.1) << r;
    }
    EXPECT_NEAR(totalDarkness(framed({{10, 10, 128, 8}, 8, 15, kAllAndInside, 4})), 120 * 8 + discArea(4), 0.3);
    EXPECT_NEAR(totalDarkness(framed({{10, 10, 200, 120}, 6, 15, 15, 20})),
                2 * 6 * (160 + 80) + discArea(20) - discArea(14), 1);
    EXPECT_EQ(totalDarkness(framed({{10, 10, 40, 30}, 0, 15, 15, 8})), 0);
}

TEST(Frame, LeavesOutSidesAndCorners) {
    const Rect box{10, 10, 40, 30};
    const Framebuffer open = framed({box, 3, kLeftSide | kTopSide | kBottomSide, 15, 8});
    EXPECT_EQ(darknessAt(open, {49, 25}), 0);
    EXPECT_EQ(darknessAt(open, {10, 25}), 255);
    EXPECT_EQ(darknessAt(open, {49, 10}), 255) << "a side without a neighbour runs to the edge";
    EXPECT_EQ(darknessAt(open, {10, 10}), 0) << "other corners stay round";
    const Framebuffer square = framed({box, 3, 15, kTopLeftCorner | kBottomLeftCorner, 8});
    EXPECT_EQ(darknessAt(square, {49, 10}), 255);
    EXPECT_EQ(darknessAt(square, {10, 10}), 0);
}

}  // namespace
}  // namespace host
