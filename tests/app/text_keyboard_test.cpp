#include <gtest/gtest.h>

#include "support/app.h"

// What lies under a modal must come back whole, and nothing may be drawn before it has been kept.
TEST(TextKeyboard, AtTheTopOfTheScreenLeavesTheToolbarAsItWas) {
    App app;
    app.create();
    app.tap(738, 50);
    const host::Framebuffer before = App::screenshot();
    app.down(440, 1640);
    app.up(1000, 1790);
    App::type("");
    EXPECT_TRUE(App::screenshot() == before);
}
