#include "platform/host/keyboard/keyboard_layout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/program.h"

namespace host {
namespace {

const std::filesystem::path kInstalled = COLOUR_SOURCE_DIR "/theme/keyboards";
const std::string kEnglish = contentOf(kInstalled / "en.ini");

/// The layout and what is said about it on the way.
std::pair<KeyboardLayout, std::string> load(const std::filesystem::path& directory, const std::string& code) {
    testing::internal::CaptureStderr();
    KeyboardLayout layout = loadKeyboardLayout(directory, code);
    return {std::move(layout), testing::internal::GetCapturedStderr()};
}

TEST(KeyboardLayout, InstalledOnesAreWhole) {
    for (const char* code : {"en", "de", "fr", "es", "ru", "ar", "signs"}) {
        const auto [layout, told] = load(kInstalled, code);
        EXPECT_EQ(told, "");
        EXPECT_EQ(layout.code, code);
    }
    const TemporaryFolder folder;
    folder.write("xx.ini", kEnglish + "base2 = = # ; [ ]\n");
    EXPECT_EQ(load(folder.path(), "xx").first.base.rows[1], (std::vector<std::string>{"=", "#", ";", "[", "]"}))
        << "signs of the format itself";
}

TEST(KeyboardLayout, DamagedFileIsToldOnceAndGivesEnglishKeys) {
    const TemporaryFolder folder;
    for (const std::string& content :
         {std::string(), kEnglish + "base1 =\n", kEnglish + "base4 = a\n", kEnglish + "shift4 = a b c\n",
          kEnglish + "base3 = 1 2 3 4 5 6 7 8 9 0 1\n", kEnglish + "shift1 = 1 2 3 4 5 6 7 8 9 0 1 2 3\n",
          kEnglish + "base2 = a \x1B\n" + "base3 =\n", kEnglish + "name = \xFF\n", std::string(100000, '='),
          std::string("\0\0\n\0", 4)}) {
        folder.write("xx.ini", content);
        const auto [layout, told] = load(folder.path(), "xx");
        const std::size_t start = told.find("colour: keyboard layout ");
        ASSERT_NE(start, std::string::npos) << told;
        EXPECT_EQ(told.find('\n', start), told.size() - 1) << "the last line: " << told;
        EXPECT_EQ(layout.code + layout.base.rows[1].front(), "ena");
    }
}

TEST(KeyboardLayout, WithoutAThemeEveryPageHasItsKeys) {
    const TemporaryFolder empty;
    for (const char* code : {"en", "signs"}) {
        const auto [layout, told] = load(empty.path(), code);
        EXPECT_EQ(std::ranges::count(told, '\n'), 1) << told;
        EXPECT_EQ(layout.code, code);
        EXPECT_EQ(layout.base.rows[0].back() + layout.shifted.rows[3].back(), *code == 'e' ? "p?" : "0.");
    }
}

}  // namespace
}  // namespace host
