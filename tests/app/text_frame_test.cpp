#include "colour/text_frame.h"

#include <gtest/gtest.h>

#include "support/app.h"

using text_frame::Hit;

namespace {

constexpr int kReach = 35;     // half a fingertip at 300 dpi
constexpr int kMinimum = 142;  // the smallest frame at 300 dpi
constexpr int kFlags = 0x611;

bool same(const irect_s& a, const irect_s& b) {
    return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h && a.flags == b.flags;
}

class TextFrame : public testing::Test {
protected:
    App app;
    const irect_s frame = {400, 500, 300, 200, kFlags};
};

}  // namespace

TEST_F(TextFrame, HoldsBothPointsAndIsNeverBelowTheMinimum) {
    const irect_s anchor = {600, 700, 0, 0, kFlags};
    EXPECT_TRUE(same(text_frame::between(anchor, 900, 1000), {600, 700, 301, 301, kFlags}));
    EXPECT_TRUE(same(text_frame::between(anchor, 300, 400), {300, 400, 301, 301, kFlags}));
    EXPECT_TRUE(same(text_frame::between(anchor, 590, 690), {590, 690, kMinimum, kMinimum, kFlags}));
    const irect_s corner = {1404 - kMinimum, 1872 - kMinimum, 0, 0, kFlags};
    EXPECT_TRUE(same(text_frame::between(corner, corner.x, corner.y),
                     {1404 - 1 - kMinimum, 1872 - 1 - kMinimum, kMinimum, kMinimum, kFlags}));
}

TEST_F(TextFrame, TellsInsideBandHandlesAndOutside) {
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
