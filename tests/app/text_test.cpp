#include <gmock/gmock.h>

#include <cstdlib>

#include "support/app.h"

using namespace testing;

TEST(TextFont, DefaultSizeComesFromTheTheme) {
    const std::string eight = "font_sizes=10,11,12,13,14,15,16,17";
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"", "28", "[1]: 28"},
        {"font_sizes=,,,\nreader.default.font=32", "18", ""},
        {"font_sizes=12,,14,16,18,20,22,24,26,28,30", "18", "[3]: 18"},
        {eight + ",18,19,20,21,22,23,24,25,26,27,28,29,30,31,32,33,34", "17", "[7]: 17"},
        {eight + "\nreader.default.font=32", "32", " (reader.default.font): 32"}};
    const TemporaryFolder theme;
    setenv("COLOUR_THEME", theme.path().c_str(), 1);
    for (const auto& [values, size, said] : cases) {
        theme.write("theme.ini", values);
        App app;
        TextEditor editor;
        internal::CaptureStderr();
        editor.SetActive(true);
        EXPECT_EQ(internal::GetCapturedStderr(), said.empty() ? "" : "DEBUG: def font size" + said + "\n");
        EXPECT_THAT(app.calls(), Contains(AllOf(StartsWith("OpenFont "), EndsWith(" " + size + " 0")))) << values;
    }
}

// Each drag begins in a box from (400, 500) to (700, 700), the last ones in one that is a pixel larger, and goes on by
// (8, -6). Handles stand at the corners and the middles of the sides, rounded down.
TEST(TextFrame, IsMovedResizedEditedOrLeftByWhereADragBegins) {
    constexpr int kReach = 35;  // half a fingertip at 300 dpi
    const std::string edited = R"(OpenKeyboard "@TextDirection" "A" 1023 0)";
    const std::string left = R"(OpenKeyboard "@TextDirection" "" 1023 0)";
    const auto at = [](const std::string& place) { return "DrawTextRect2 " + place + " 1553 \"A\""; };
    const std::string moved = at("408 494 300 200"), movedOdd = at("408 494 301 201");
    const std::tuple<int, int, std::string, int> cases[] = {
        {400 + kReach + 1, 560, edited, 700}, {400 + kReach, 560, moved, 700},
        {400 - kReach, 560, moved, 700},      {400 - kReach - 1, 560, left, 700},
        {550 + kReach, 500, moved, 700},      {550 + kReach - 1, 500, at("400 494 300 206"), 700},
        {550, 700 + kReach, moved, 700},      {550, 700 + kReach + 1, left, 700},
        {550 + kReach, 500, movedOdd, 701},   {400, 600 + kReach, movedOdd, 701}};
    App app;
    app.create();
    app.tap(738, 50);
    for (const auto& [x, y, call, side] : cases) {
        app.drag({{400, 500}, {side - 1, side - 1}});
        App::type("A");
        app.calls();
        app.drag({{x, y}, {x + 8, y - 6}});
        EXPECT_THAT(app.calls(), Contains(call)) << x << ' ' << y;
        App::type("");
        app.tap(1078, 50);
    }
}
