#include "colour/text_frame.h"

#include <gtest/gtest.h>

#include "support/app.h"

using text_frame::Hit;

namespace {

constexpr int kReach = 35;     // half a fingertip at 300 dpi
constexpr int kMinimum = 142;  // the smallest frame at 300 dpi
constexpr int kFlags = 0x611;

}  // namespace

// Its line on the far side would lie just beyond the screen.
TEST(TextFrame, OfTheSmallestSizeInTheLastCornerMovesBackByOne) {
    const App app;
    const irect_s corner = {1404 - kMinimum, 1872 - kMinimum, 0, 0, kFlags};
    const irect_s frame = text_frame::between(corner, corner.x, corner.y);
    EXPECT_EQ(frame.x, corner.x - 1);
    EXPECT_EQ(frame.y, corner.y - 1);
}

TEST(TextFrame, TellsInsideBandHandlesAndOutside) {
    const App app;
    const irect_s frame = {400, 500, 300, 200, kFlags};
    const struct {
        int x, y;
        Hit::Zone zone;
        int edges;
    } cases[] = {
        {400 + kReach + 1, 560, Hit::Inside, 0},
        {400 + kReach, 560, Hit::Band, 0},
        {400 - kReach, 560, Hit::Band, 0},
        {400 - kReach - 1, 560, Hit::Outside, 0},
        {400, 500, Hit::Handle, 1 + 4},
        {700, 500, Hit::Handle, 2 + 4},
        {400, 700, Hit::Handle, 1 + 8},
        {700, 700, Hit::Handle, 2 + 8},
        {550, 500, Hit::Handle, 4},
        {550, 700, Hit::Handle, 8},
        {400, 600, Hit::Handle, 1},
        {700, 600, Hit::Handle, 2},
        {550 + kReach, 500, Hit::Band, 0},
        {550 + kReach - 1, 500, Hit::Handle, 4},
        {550, 700 + kReach, Hit::Band, 0},
        {550, 700 + kReach + 1, Hit::Outside, 0},
    };
    for (const auto& [x, y, zone, edges] : cases) {
        const Hit hit = text_frame::hitTest(frame, x, y);
        EXPECT_EQ(hit.zone, zone) << x << ' ' << y;
        EXPECT_EQ(hit.edges, edges) << x << ' ' << y;
    }
    const irect_s odd = {400, 500, 301, 201, kFlags};
    EXPECT_EQ(text_frame::hitTest(odd, 550 + kReach, 500).zone, Hit::Band) << "the middle is rounded down";
    EXPECT_EQ(text_frame::hitTest(odd, 400, 600 + kReach).zone, Hit::Band);
}
