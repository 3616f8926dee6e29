#include <gmock/gmock.h>

#include "support/app.h"

using testing::Contains;
using testing::StartsWith;

TEST(Toolbar, TakesAPressOnItsEdgesAndLeavesTheGapToTheCanvas) {
    App app;
    app.create();
    // The pen button covers 352 .. 445; both edge lines belong to it.
    app.calls();
    app.down(445, 98);
    EXPECT_THAT(app.calls(), Contains("< 1"));
    app.up(446, 98);
    app.calls();
    app.down(446, 50);
    EXPECT_THAT(app.calls(), Contains("< 0"));
}

TEST(Palette, StandsWhereItsLengthsPutIt) {
    App app({.width = 1072, .height = 1448, .dpi = 227});
    app.create();
    // Colour button at 227 dpi: x from 137, 71 wide.
    app.tap(160, 30);
    const auto calls = app.calls();
    EXPECT_THAT(calls, Contains(StartsWith("DrawFrameRectCertifiedEx 79 100 448 224 ")));
    EXPECT_THAT(calls, Contains("FillAreaRect 128 133 64 64 0xFFFFFF"));
    EXPECT_THAT(calls, Contains("FillAreaRect 413 228 64 64 0xFFFFFF"));
}

TEST(Thickness, ChangesTheLine) {
    App app;
    app.create();
    for (const auto& [x, width] : {std::pair{190, 2}, {322, 6}, {454, 10}, {586, 14}, {718, 18}}) {
        app.tap(398, 50);
        app.tap(x, 200);
        app.calls();
        app.tap(700, 900);
        EXPECT_THAT(app.calls(), Contains(testing::EndsWith("0xFF0000 " + std::to_string(width))));
    }
}

// What lies under a modal must come back whole, and nothing may be drawn before it has been kept.
TEST(Keyboard, AtTheTopOfTheScreenLeavesTheToolbarAsItWas) {
    App app;
    app.create();
    app.tap(738, 50);
    const host::Framebuffer before = App::screenshot();
    app.down(440, 1640);
    app.up(1000, 1790);
    App::kit().loop.command([](host::Modal& modal) { return modal.type(""); });
    EXPECT_TRUE(App::screenshot() == before);
}
