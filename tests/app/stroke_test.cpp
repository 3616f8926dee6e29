#include <gmock/gmock.h>

#include <cmath>

#include "support/app.h"

using testing::ElementsAre;

namespace {

std::vector<std::string> starting(const std::vector<std::string>& lines, const std::string& word) {
    std::vector<std::string> found;
    for (const std::string& line : lines) {
        if (line.starts_with(word + " ")) found.push_back(line);
    }
    return found;
}

class Stroke : public testing::Test {
protected:
    Stroke() {
        app.create();
        app.calls();
    }

    App app;
};

}  // namespace

TEST_F(Stroke, DrawsEachPieceOnceAndThreePointsBehindThePointer) {
    app.down(100, 400);
    for (int point = 1; point < 9; ++point) app.move(100 + 20 * point, 400);
    std::vector<std::string> pieces = starting(app.calls(), "drawXYSpline");
    ASSERT_EQ(pieces.size(), 6U);
    EXPECT_EQ(pieces.front(), "drawXYSpline 100 400 120 400 100 0xFF0000 10");
    app.up(280, 400);
    pieces = starting(app.calls(), "drawXYSpline");
    ASSERT_EQ(pieces.size(), 3U);
    EXPECT_EQ(pieces.back(), "drawXYSpline 260 400 280 400 100 0xFF0000 10");
}

// A report comes about ten times a second in the middle of a stroke: the line must have no hole there.
TEST_F(Stroke, HasNoHoleWhereReportsComeBetweenMoves) {
    for (const int report_at : {1, 2, 5, 9}) {
        app.down(100, 400);
        for (int point = 1; point < 12; ++point) {
            app.event(point == report_at ? EventType::PointerReport : EventType::PointerMove, 100 + 20 * point, 400);
        }
        app.up(340, 400);
        EXPECT_EQ(starting(app.calls(), "drawXYSpline").size(), 12U) << report_at;
    }
    for (int x = 100; x <= 340; ++x) EXPECT_EQ(App::pixel(x, 400), kRed) << x;
}

TEST_F(Stroke, RefreshesAlignedBlocksAndEndsAtTheCanvasEdge) {
    app.down(10, 121);
    app.down(11, 121);
    app.down(1403, 1871);
    EXPECT_THAT(starting(app.calls(), "DynamicUpdateBW"),
                ElementsAre("DynamicUpdateBW 8 120 4 4", "DynamicUpdateBW 8 120 8 4", "DynamicUpdateBW 1400 1868 4 4"));
}

TEST_F(Stroke, ShowsAllItsInkBeforeThePenIsLifted) {
    app.down(300, 400);
    for (int i = 1; i < 40; ++i) app.move(300 + 5 * i, 400 + static_cast<int>(std::lround(60 * std::sin(i / 5.0))));
    app.up(500, 459);
    const host::Framebuffer& shown = App::kit().panel.shown();
    for (int y = 300; y < 500; ++y) {
        for (int x = 280; x < 520; ++x) {
            const int lightness = App::pixel(x, y) & 0xFF;
            if (lightness < 0x80) {
                ASSERT_EQ(*shown.at(x, y), 0) << x << ' ' << y;
            }
            if (lightness == 0xFF) {
                ASSERT_EQ(*shown.at(x, y), 0xFF) << x << ' ' << y;
            }
        }
    }
}
