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
    struct Case {
        int x;
        int y;
        Hit::Zone zone;
        int edges;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        const Hit hit = text_frame::hitTest(frame, c.x, c.y);
        EXPECT_EQ(hit.zone, c.zone) << c.x << ' ' << c.y;
        EXPECT_EQ(hit.edges, c.edges) << c.x << ' ' << c.y;
    }
    const irect_s odd = {400, 500, 301, 201, kFlags};
    EXPECT_EQ(text_frame::hitTest(odd, 550 + kReach, 500).zone, Hit::Band) << "the middle is rounded down";
    EXPECT_EQ(text_frame::hitTest(odd, 400, 600 + kReach).zone, Hit::Band);
}

TEST_F(TextFrame, StaysOnTheScreenWhileItMoves) {
    EXPECT_TRUE(same(text_frame::moved(frame, -1000, -1000), {0, 0, 300, 200, kFlags}));
    EXPECT_TRUE(same(text_frame::moved(frame, 5000, 5000), {1104, 1672, 300, 200, kFlags}));
    EXPECT_TRUE(same(text_frame::moved(frame, 7, -9), {407, 491, 300, 200, kFlags}));
}

TEST_F(TextFrame, ResizesOnlyTheGrabbedEdges) {
    using namespace text_frame;
    struct Case {
        int edges;
        int dx;
        int dy;
        irect_s expected;
    };
    const Case cases[] = {
        {kEdgeLeft, 20, 99, {420, 500, 280, 200, kFlags}},
        {kEdgeLeft, -1000, 0, {0, 500, 700, 200, kFlags}},
        {kEdgeLeft, 1000, 0, {700 - kMinimum, 500, kMinimum, 200, kFlags}},
        {kEdgeRight, 5000, 0, {400, 500, 1004, 200, kFlags}},
        {kEdgeRight, -5000, 0, {400, 500, kMinimum, 200, kFlags}},
        {kEdgeTop, 99, -1000, {400, 0, 300, 700, kFlags}},
        {kEdgeTop, 0, 1000, {400, 700 - kMinimum, 300, kMinimum, kFlags}},
        {kEdgeBottom, 0, 5000, {400, 500, 300, 1372, kFlags}},
        {kEdgeRight + kEdgeBottom, 10, 20, {400, 500, 310, 220, kFlags}},
        {kEdgeLeft + kEdgeTop, 10, 20, {410, 520, 290, 180, kFlags}},
    };
    for (const Case& c : cases) EXPECT_TRUE(same(resized(frame, c.edges, c.dx, c.dy), c.expected)) << c.edges << c.dx;
}
