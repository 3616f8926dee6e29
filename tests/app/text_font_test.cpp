#include <gmock/gmock.h>

#include <cstdlib>

#include "support/app.h"

using namespace testing;

TEST(TextFont, DefaultSizeComesFromTheTheme) {
    const std::string eight = "font_sizes=10,11,12,13,14,15,16,17";
    const struct {
        std::string values, size, said;
    } cases[] = {
        {"", "28", "DEBUG: def font size[1]: 28\n"},
        {"font_sizes=,,,\nreader.default.font=32", "18", ""},
        {"font_sizes=12,,14,16,18,20,22,24,26,28,30", "18", "DEBUG: def font size[3]: 18\n"},
        {eight + ",18,19,20,21,22,23,24,25,26,27,28,29,30,31,32,33,34", "17", "DEBUG: def font size[7]: 17\n"},
        {eight + "\nreader.default.font=32", "32", "DEBUG: def font size (reader.default.font): 32\n"},
    };
    const TemporaryFolder theme;
    setenv("COLOUR_THEME", theme.path().c_str(), 1);
    for (const auto& [values, size, said] : cases) {
        std::ofstream(theme.path() / "theme.ini") << values;
        App app;
        TextEditor editor;
        testing::internal::CaptureStderr();
        editor.SetActive(true);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), said);
        EXPECT_THAT(app.calls(), Contains(AllOf(StartsWith("OpenFont "), EndsWith(" " + size + " 0")))) << values;
    }
}
