#include "platform/host/desk/tip.h"

#include "desk/world.h"

namespace host::test {
namespace {

using Kind = Input::Kind;

/// An application that draws its pieces two points behind the pointer, on the left two hundred columns only.
struct TipTest : testing::Test {
    TipTest() {
        world.start();
        for (const int sample : {29, 31, 35}) {
            world.on[sample] = [this] {
                if (at_.x >= 200 || !draws) return;
                points.push_back(at_);
                if (points.size() > 2) world.loop.inked(points[points.size() - 3], 0x123456, 7);
            };
        }
    }

    /// Where the display shows wet ink after that input.
    std::vector<Point> after(Kind kind, Point at) {
        if (kind == Kind::PointerDown) points = {at};
        at_ = at;
        world.loop.input({.kind = kind, .at = at});
        return world.display.wet;
    }

    World world;
    bool draws = true;
    std::vector<Point> points;
    Point at_;
};

TEST_F(TipTest, WetInkLeadsFromTheLastPieceOfThisPressToThePointer) {
    for (int press = 0; press < 2; ++press) {
        EXPECT_EQ(after(Kind::PointerDown, {10, 10}), std::vector<Point>{});
        EXPECT_EQ(after(Kind::PointerMove, {20, 10}), std::vector<Point>{}) << "nothing tells the colour yet";
        EXPECT_EQ(after(Kind::PointerMove, {30, 10}), (std::vector<Point>{{10, 10}, {20, 10}, {30, 10}}));
        EXPECT_EQ(after(Kind::PointerMove, {30, 20}), (std::vector<Point>{{20, 10}, {30, 10}, {30, 20}}));
        EXPECT_EQ(after(Kind::PointerUp, {40, 20}), std::vector<Point>{}) << "gone at the lift";
    }
    draws = false;
    after(Kind::PointerDown, {10, 10});
    for (int x = 0; x < 100; ++x) EXPECT_EQ(after(Kind::PointerMove, {x, 10}), std::vector<Point>{}) << "an eraser";
}

TEST_F(TipTest, WhatIsBesideThePageIsNoInk) {
    after(Kind::PointerDown, {170, 10});
    after(Kind::PointerMove, {180, 10});
    after(Kind::PointerMove, {190, 10});
    EXPECT_EQ(after(Kind::PointerMove, {205, 10}), std::vector<Point>{});
    EXPECT_EQ(after(Kind::PointerMove, {210, 40}), std::vector<Point>{});
    EXPECT_EQ(after(Kind::PointerMove, {190, 40}), (std::vector<Point>{{180, 10}, {190, 10}, {190, 40}}));
}

TEST_F(TipTest, EInkShowsNone) {
    Panel slow{world.screen.pixels(), world.display, world.clock, true};
    const WetInk ink{{{1, 1}, {9, 9}}, kBlack, 5};
    slow.wetInk(&ink);
    EXPECT_EQ(world.display.wet, std::vector<Point>{});
}

}  // namespace
}  // namespace host::test
