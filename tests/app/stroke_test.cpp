#include <gmock/gmock.h>

#include <cmath>

#include "support/app.h"

using namespace testing;

// A report comes about ten times a second in the middle of a stroke: the line must have no hole there.
TEST(Stroke, HasNoHoleWhereReportsComeBetweenMoves) {
    App app;
    app.create();
    app.calls();
    for (const int report_at : {1, 2, 5, 9}) {
        app.down(100, 400);
        for (int point = 1; point < 12; ++point)
            app.event(point == report_at ? EventType::PointerReport : EventType::PointerMove, 100 + 20 * point, 400);
        app.up(340, 400);
        EXPECT_THAT(app.calls(), Contains(StartsWith("drawXYSpline ")).Times(12)) << report_at;
    }
    for (int x = 100; x <= 340; ++x) EXPECT_EQ(App::pixel(x, 400), kRed) << x;
}

TEST(Stroke, ShowsAllItsInkBeforeThePenIsLifted) {
    App app;
    app.create();
    app.down(300, 400);
    for (int i = 1; i < 40; ++i) app.move(300 + 5 * i, 400 + static_cast<int>(std::lround(60 * std::sin(i / 5.0))));
    app.up(500, 459);
    const host::Framebuffer& shown = App::kit().panel.shown();
    for (int y = 300; y < 500; ++y) {
        for (int x = 280; x < 520; ++x) {
            const int lightness = App::pixel(x, y) & 0xFF;
            if (lightness >= 0x80 && lightness < 0xFF) continue;
            ASSERT_EQ(*shown.at(x, y), lightness == 0xFF ? 0xFF : 0) << x << ' ' << y;
        }
    }
}
