#include "platform/host/keyboard/keyboard_layout.h"

#include <gmock/gmock.h>

#include "support/program.h"

namespace host {
namespace {

const std::filesystem::path kInstalled = COLOUR_SOURCE_DIR "/theme/keyboards";
const std::string kEnglish = contentOf(kInstalled / "en.ini");

struct Loaded {
    KeyboardLayout layout;
    std::string told;
};

Loaded load(const std::filesystem::path& directory, const std::string& code) {
    testing::internal::CaptureStderr();
    KeyboardLayout layout = loadKeyboardLayout(directory, code);
    return {std::move(layout), testing::internal::GetCapturedStderr()};
}

Loaded loadContent(const std::string& content) {
    const TemporaryFolder folder;
    folder.write("xx.ini", content);
    return load(folder.path(), "xx");
}

TEST(KeyboardLayout, InstalledOnesAreWhole) {
    for (const char* code : {"en", "de", "fr", "es", "ru", "ar", "signs"}) {
        const Loaded loaded = load(kInstalled, code);
        EXPECT_EQ(loaded.told, "");
        EXPECT_EQ(loaded.layout.code, code);
    }
    EXPECT_EQ(load(kInstalled, "de").layout.base.rows[0][5], "z");
    EXPECT_EQ(load(kInstalled, "ru").layout.shifted.rows[2][0], "Я");
    EXPECT_TRUE(load(kInstalled, "ar").layout.startsRight);
    const KeyboardLayout signs = loadContent(kEnglish + "base2 = = # ; [ ]\n").layout;
    EXPECT_EQ(signs.base.rows[1], (std::vector<std::string>{"=", "#", ";", "[", "]"})) << "signs of the format itself";
}

TEST(KeyboardLayout, DamagedFileIsToldOnceAndGivesEnglishKeys) {
    for (const std::string& content :
         {std::string(), kEnglish + "base1 =\n", kEnglish + "base4 = a\n", kEnglish + "shift4 = a b c\n",
          kEnglish + "base3 = 1 2 3 4 5 6 7 8 9 0 1\n", kEnglish + "shift1 = 1 2 3 4 5 6 7 8 9 0 1 2 3\n",
          kEnglish + "base2 = a \x1B\nbase3 =\n", kEnglish + "name = \xFF\n", std::string(100000, '='),
          std::string(4, '\0')}) {
        const Loaded loaded = loadContent(content);
        EXPECT_THAT(loaded.told, testing::ContainsRegex("colour: keyboard layout [^\n]*\n$"));
        EXPECT_EQ(loaded.layout.code, "en");
        EXPECT_EQ(loaded.layout.base.rows[1].front(), "a");
    }
}

TEST(KeyboardLayout, WithoutAThemeEveryPageHasItsKeys) {
    const TemporaryFolder empty;
    for (const char* code : {"en", "signs"}) {
        const Loaded loaded = load(empty.path(), code);
        EXPECT_THAT(loaded.told, testing::MatchesRegex("[^\n]*\n"));
        EXPECT_EQ(loaded.layout.code, code);
        EXPECT_EQ(loaded.layout.shifted.rows[3].size(), 2U);
    }
    EXPECT_EQ(load(empty.path(), "signs").layout.base.rows[0].back(), "0");
}

}  // namespace
}  // namespace host
