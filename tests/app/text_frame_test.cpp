#include <gmock/gmock.h>

#include "support/app.h"

// Each drag begins in a box from (400, 500) to (700, 700), the last ones in one that is a pixel larger, and goes on by
// (8, -6). Handles stand at the corners and the middles of the sides, rounded down.
TEST(TextFrame, IsMovedResizedEditedOrLeftByWhereADragBegins) {
    constexpr int kReach = 35;  // half a fingertip at 300 dpi
    const std::string edited = R"(OpenKeyboard "@TextDirection" "A" 1023 0)";
    const std::string left = R"(OpenKeyboard "@TextDirection" "" 1023 0)";
    const auto at = [](const std::string& place) { return "DrawTextRect2 " + place + " 1553 \"A\""; };
    const std::string moved = at("408 494 300 200");
    const std::string movedOdd = at("408 494 301 201");
    const struct {
        int x, y;
        std::string call;
        int side = 700;
    } cases[] = {
        {400 + kReach + 1, 560, edited},    {400 + kReach, 560, moved},
        {400 - kReach, 560, moved},         {400 - kReach - 1, 560, left},
        {550 + kReach, 500, moved},         {550 + kReach - 1, 500, at("400 494 300 206")},
        {550, 700 + kReach, moved},         {550, 700 + kReach + 1, left},
        {550 + kReach, 500, movedOdd, 701}, {400, 600 + kReach, movedOdd, 701},
    };
    App app;
    app.create();
    app.tap(738, 50);
    for (const auto& [x, y, call, side] : cases) {
        app.down(400, 500);
        app.up(side - 1, side - 1);
        App::type("A");
        app.calls();
        app.down(x, y);
        app.up(x + 8, y - 6);
        EXPECT_THAT(app.calls(), testing::Contains(call)) << x << ' ' << y;
        App::type("");
        app.tap(1078, 50);
    }
}
