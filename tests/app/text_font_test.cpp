#include <gmock/gmock.h>

#include <cstdlib>

#include "support/app.h"

using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::Not;
using testing::StartsWith;

namespace {

auto opensFontOf(const std::string& size) {
    return Contains(AllOf(StartsWith("OpenFont "), EndsWith(" " + size + " 0")));
}

}  // namespace

TEST(TextFont, DefaultSizeComesFromTheTheme) {
    const std::string eight = "font_sizes=10,11,12,13,14,15,16,17";
    const std::pair<std::string, std::string> cases[] = {
        {"", "28"},
        {"font_sizes=", "18"},
        {"font_sizes=,,,\nreader.default.font=32", "18"},
        {"font_sizes=12,,14,16,18,20,22,24,26,28,30", "18"},
        {eight + ",18,19,20,21,22,23,24,25,26,27,28,29,30,31,32,33,34", "17"},
        {eight + "\nreader.default.font=32", "32"},
    };
    const TemporaryFolder theme;
    setenv("COLOUR_THEME", theme.path().c_str(), 1);
    for (const auto& [values, size] : cases) {
        std::ofstream(theme.path() / "theme.ini") << values;
        App app;
        TextEditor editor;
        editor.SetActive(true);
        EXPECT_THAT(app.calls(), opensFontOf(size)) << values;
    }
}

TEST(TextFont, RefusesAChoiceThatDoesNotFit) {
    App app;
    const TextEditor editor;
    const auto choose = [&app](std::string font) {
        TextEditor::staticFontHandler(font.data(), nullptr, nullptr, nullptr);
        return app.calls();
    };
    EXPECT_THAT(choose(std::string(127, 'n') + ",12"), opensFontOf("12"));
    EXPECT_THAT(choose("A,B,20"), opensFontOf("0"));
    EXPECT_THAT(choose("Sans,000000012"), opensFontOf("12"));
    for (const std::string& font : {std::string(128, 'n') + ",12", std::string("Sans,0000000012"), std::string("Sans")})
        EXPECT_THAT(choose(font), Not(Contains(StartsWith("OpenFont ")))) << font;
}
