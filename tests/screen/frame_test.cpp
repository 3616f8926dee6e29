#include <gtest/gtest.h>

#include <numbers>

#include "platform/host/screen/screen.h"
#include "screen/pixels.h"

namespace host {
namespace {

constexpr int kAllAndInside = 15 | kFilled;

Framebuffer framed(const Frame& frame) {
    Screen screen({240, 240}, PixelFormat::Grey8);
    screen.frame(frame);
    return screen.pixels();
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

}  // namespace
}  // namespace host
