#include <gmock/gmock.h>

#include "support/app.h"

using testing::Contains;

namespace {

constexpr int kReach = 35;  // half a fingertip at 300 dpi

/// Draws a frame from (400, 500) to that corner and types "A" into it.
void showBox(App& app, int right, int bottom) {
    app.down(400, 500);
    app.up(right - 1, bottom - 1);
    App::kit().loop.command([](host::Modal& keyboard) { return keyboard.type("A"); });
}

void discardBox(App& app) {
    App::kit().loop.command([](host::Modal& keyboard) { return keyboard.type(""); });
    app.tap(1078, 50);
}

}  // namespace

TEST(TextFrame, IsMovedResizedEditedOrLeftByWhereADragBegins) {
    const std::string edited = R"(OpenKeyboard "@TextDirection" "A" 1023 0)";
    const std::string left = R"(OpenKeyboard "@TextDirection" "" 1023 0)";
    const auto at = [](const std::string& place) { return "DrawTextRect2 " + place + " 1553 \"A\""; };
    const std::string moved = at("408 494 300 200");
    const struct {
        int x, y;
        std::string call;
    } cases[] = {
        {400 + kReach + 1, 560, edited},   {400 + kReach, 560, moved},
        {400 - kReach, 560, moved},        {400 - kReach - 1, 560, left},
        {400, 500, at("408 494 292 206")}, {700, 500, at("400 494 308 206")},
        {400, 700, at("408 500 292 194")}, {700, 700, at("400 500 308 194")},
        {550, 500, at("400 494 300 206")}, {550, 700, at("400 500 300 194")},
        {400, 600, at("408 500 292 200")}, {700, 600, at("400 500 308 200")},
        {550 + kReach, 500, moved},        {550 + kReach - 1, 500, at("400 494 300 206")},
        {550, 700 + kReach, moved},        {550, 700 + kReach + 1, left},
    };
    App app;
    app.create();
    app.tap(738, 50);
    for (const auto& [x, y, call] : cases) {
        showBox(app, 700, 700);
        app.calls();
        app.down(x, y);
        app.up(x + 8, y - 6);
        EXPECT_THAT(app.calls(), Contains(call)) << x << ' ' << y;
        discardBox(app);
    }
}

TEST(TextFrame, OfOddSizeHasItsHandlesAtTheMiddleRoundedDown) {
    App app;
    app.create();
    app.tap(738, 50);
    for (const host::Point point : {host::Point{550 + kReach, 500}, host::Point{400, 600 + kReach}}) {
        showBox(app, 701, 701);
        app.calls();
        app.down(point.x, point.y);
        app.up(point.x + 8, point.y - 6);
        EXPECT_THAT(app.calls(), Contains("DrawTextRect2 408 494 301 201 1553 \"A\"")) << point.x;
        discardBox(app);
    }
}
