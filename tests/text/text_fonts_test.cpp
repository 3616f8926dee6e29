#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "platform/host/screen/utf8.h"
#include "text/text_fixture.h"

namespace host {
namespace {

constexpr Rect kBox{50, 40, 500, 320};

using TextFonts = TextTest;

TEST_F(TextFonts, FamiliesAreFoundInAnyCaseAndUnknownOnesGiveTheDefault) {
    for (const char* unknown : {"No Such Font", "", "\xFF\xFE", ",", "Sans", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(text_.open(unknown, 24)->family, text_.defaultFamily(0));
    }
    EXPECT_EQ(drawnIn(*text_.open("No Such Font", 24), kBox, "Test").pixels(), drawn(kBox, "Test").pixels());
    EXPECT_NE(drawnIn(*text_.open("DejaVu Serif", 24), kBox, "Test").pixels(), drawn(kBox, "Test").pixels());
    EXPECT_EQ(text_.open("dejavu serif", 24)->family, "DejaVu Serif");
    EXPECT_EQ(text_.open("Serif", 24)->family, text_.defaultFamily(1));
    EXPECT_EQ(text_.open("monospace", 24)->family, text_.defaultFamily(2));
    EXPECT_STREQ(text_.defaultFamily(7), text_.defaultFamily(0));
    const auto narrow = text_.open(text_.defaultFamily(2), 24);
    EXPECT_EQ(text_.measure("iiii", *narrow, 0).w, text_.measure("MMMM", *narrow, 0).w);
}

TEST_F(TextFonts, FamiliesAreSortedAndFreeOfCommas) {
    const std::vector<std::string>& families = text_.families();
    for (const int index : {0, 1, 2}) EXPECT_THAT(families, testing::Contains(text_.defaultFamily(index)));
    EXPECT_EQ(std::adjacent_find(families.begin(), families.end()), families.end());
    EXPECT_THAT(families, testing::Not(testing::Contains(testing::HasSubstr(","))));
    EXPECT_LT(std::find(families.begin(), families.end(), "DejaVu Sans"),
              std::find(families.begin(), families.end(), "Noto Sans"));
}

TEST_F(TextFonts, OnlyFamiliesWithoutTheirNamesLettersHaveASample) {
    EXPECT_EQ(text_.sample("DejaVu Sans"), "");
    EXPECT_EQ(text_.sample("No Such Font"), "");
    EXPECT_EQ(text_.sample("Noto Sans Thai"), "กขฃคฅฆ");
    EXPECT_FALSE(text_.sample("Noto Sans Symbols2").empty());
}

/// A machine whose only fonts are those in `folder`.
void useFontsIn(const std::string& folder) {
    const std::string path = testing::TempDir() + "text_fonts.conf";
    std::ofstream(path) << "<fontconfig><dir>" << folder << "</dir><cachedir>" << testing::TempDir()
                        << "text_fonts_cache</cachedir></fontconfig>";
    setenv("FONTCONFIG_FILE", path.c_str(), 1);
}

TEST(TextWithoutFonts, SaysSoOnceAndDrawsNothing) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto scene = [] {
        useFontsIn("/nowhere");
        const Device device{100, 100, 167};
        Text text(device);
        Screen screen({100, 100}, PixelFormat::Grey8);
        const std::unique_ptr<font_s> font = text.open(nullptr, 24);
        text.draw(screen, {0, 0, 100, 100}, "x", *font, {});
        const bool blank = screen.pixels() == Screen({100, 100}, PixelFormat::Grey8).pixels();
        std::exit(blank && text.families().empty() && text.measure("x", *font, 0) == Size{} ? 0 : 1);
    };
    EXPECT_EXIT(scene(), testing::ExitedWithCode(0), "^colour: fontconfig finds no outline font.*\n$");
}

TEST(TextUtf8, ReplacesEachBrokenPartOnce) {
    const std::string r = "\uFFFD";
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"a\u00E9\u20AC\U0001F600", "a\u00E9\u20AC\U0001F600"},
        {"\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF",
         "\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF"},
        {"\x80", r},
        {"a\xFF\xFEz", "a" + r + r + "z"},
        {"\xC3", r},
        {"\xC3(", r + "("},
        {"\xE2\x82", r},
        {"\xE2\x82x", r + "x"},
        {"\xF0\x9F\x98\xC3\xA9", r + "\u00E9"},
        {"\xC0\xAF", r + r},
        {"\xE0\x9F\xBF", r + r + r},
        {"\xED\xA0\x80", r + r + r},
        {"\xF0\x8F\xBF\xBF", r + r + r + r},
        {"\xF4\x90\x80\x80", r + r + r + r},
        {"\xF5\x80", r + r},
        {std::string("a\0b", 3), "a" + r + "b"},
        // The example of "maximal subparts" in the Unicode Standard, section 3.9.
        {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64", "a" + r + r + r + "b" + r + "c" + r + r + "d"},
    };
    for (const auto& [bytes, repaired] : cases) EXPECT_EQ(repairedUtf8(bytes), repaired) << bytes;
}

TEST_F(TextFonts, BrokenUtf8IsDrawnAsReplacementCharacters) {
    EXPECT_EQ(drawn(kBox, "a\xE2\x82z\xFF").pixels(), drawn(kBox, "a\uFFFDz\uFFFD").pixels());
}

}  // namespace
}  // namespace host
