#include <gmock/gmock.h>

#include "support/app.h"

using testing::Contains;

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
