#include "platform/host/screen/text.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <random>

#include "platform/host/screen/utf8.h"

namespace host {
namespace {

constexpr Rect kBox{50, 40, 500, 320};
constexpr const char* kLatin = "The quick brown fox jumps over the lazy dog. ";
constexpr const char* kArabic = "مرحبا بالعالم هذا نص عربي ";
constexpr const char* kHebrew = "שלום עולם זה טקסט ";
constexpr const char* kDevanagari = "नमस्ते दुनिया क्षत्रिय संस्कृति ";
constexpr const char* kThai = "สวัสดีชาวโลกภาษาไทยไม่มีช่องว่าง";

/// The script's words again and again, cut to exactly that many bytes, be it inside a character.
std::string repeated(std::string_view words, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += words;
    text.resize(bytes);
    return text;
}

/// A grey 600 × 400 screen with the default font in 24 units (25 pixels at 167 dpi).
class TextTest : public testing::Test {
protected:
    Screen drawn(Rect box, std::string_view utf8, const TextStyle& style = {}) {
        return drawnIn(*font_, box, utf8, style);
    }
    Screen drawnIn(const font_s& font, Rect box, std::string_view utf8, const TextStyle& style = {}) {
        Screen screen(device_.bounds().size(), PixelFormat::Grey8);
        text_.draw(screen, box, utf8, font, style);
        return screen;
    }

    /// The smallest rectangle around all that is not white.
    static Rect ink(const Screen& screen) {
        Rect inked;
        const Framebuffer& pixels = screen.pixels();
        for (int y = 0; y < pixels.size().h; ++y) {
            for (int x = 0; x < pixels.size().w; ++x) {
                if (*pixels.at(x, y) != 0xFF) inked = inked.united({x, y, 1, 1});
            }
        }
        return inked;
    }

    static bool inside(Rect inner, Rect outer) { return inner.empty() || inner.intersected(outer) == inner; }

    Device device_{600, 400, 167, 1.0, false, 0};
    Text text_{device_};
    std::unique_ptr<font_s> font_ = text_.open(nullptr, 24);
};

struct Script {
    const char* name;
    const char* words;
};

class TextScripts : public TextTest, public testing::WithParamInterface<Script> {};

TEST_P(TextScripts, FillTheBoxAndStayInside) {
    const Rect inked = ink(drawn(kBox, repeated(GetParam().words, 1023)));
    EXPECT_TRUE(inside(inked, kBox));
    EXPECT_GT(inked.w, kBox.w * 8 / 10);
    EXPECT_GT(inked.h, kBox.h * 6 / 10);
}

TEST_P(TextScripts, AreShapedByAFontThatHasThem) {
    const Screen shaped = drawn(kBox, repeated(GetParam().words, 24));
    const Screen missing = drawn(kBox, repeated("\x01", 8));
    EXPECT_FALSE(ink(shaped).empty());
    EXPECT_NE(ink(shaped).size(), ink(missing).size());
}

INSTANTIATE_TEST_SUITE_P(All, TextScripts,
                         testing::Values(Script{"Latin", kLatin}, Script{"Arabic", kArabic}, Script{"Hebrew", kHebrew},
                                         Script{"Devanagari", kDevanagari}, Script{"Thai", kThai}),
                         [](const auto& script) { return script.param.name; });

TEST_F(TextTest, StartsOnTheSideOfItsScript) {
    const int middle = kBox.x + kBox.w / 2;
    const auto rightOf = [&](const char* text, Align align = Align::Start) {
        return ink(drawn(kBox, text, {align})).x > middle;
    };
    EXPECT_FALSE(rightOf("Latin"));
    EXPECT_TRUE(rightOf("مرحبا"));
    EXPECT_TRUE(rightOf("שלום 123 abc"));
    EXPECT_FALSE(rightOf("مرحبا", Align::End));
    EXPECT_TRUE(rightOf("Latin", Align::End));
    const Rect centred = ink(drawn(kBox, "ooo", {Align::Centre}));
    EXPECT_NEAR(centred.x + centred.w / 2, middle, 2);
}

TEST_F(TextTest, NeverLeavesItsBox) {
    std::mt19937 random(7);
    const auto number = [&random](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
    for (int round = 0; round < 300; ++round) {
        const Rect box{number(-300, 650), number(-300, 450), number(-5, 400), number(-5, 300)};
        std::string bytes(static_cast<std::size_t>(number(0, 200)), '\0');
        for (char& byte : bytes) byte = static_cast<char>(round % 2 == 0 ? number(0, 255) : number(32, 126));
        const std::unique_ptr<font_s> font = text_.open(nullptr, number(1, 200));
        const TextStyle style{static_cast<Align>(number(0, 2)), static_cast<Wrap>(number(0, 1))};
        ASSERT_TRUE(inside(ink(drawnIn(*font, box, bytes, style)), box)) << "round " << round;
    }
}

TEST_F(TextTest, TakesBoxesAndSizesOfAnyValue) {
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    for (const Rect box :
         {Rect{10, 10, 0, 50}, {10, 10, 50, -1}, {kMost, kMost, kMost, kMost}, {kLeast, kLeast, kMost, kMost}}) {
        EXPECT_TRUE(ink(drawn(box, "x")).empty());
    }
    EXPECT_FALSE(ink(drawn({0, 0, kMost, kMost}, "x")).empty());
    for (const Wrap wrap : {Wrap::Words, Wrap::None}) {
        drawn({-kMost / 2, -kMost / 2, kMost, kMost}, repeated("x\n", 1023), {Align::Centre, wrap});
        drawnIn(font_s{"DejaVu Sans", kMost}, {kLeast, kLeast, kMost, kMost}, "x", {Align::End, wrap});
    }
    EXPECT_FALSE(ink(drawnIn(font_s{"DejaVu Sans", kMost}, device_.bounds(), repeated("x\n", 1023))).empty());
    EXPECT_EQ(text_.open(nullptr, 0), nullptr);
    EXPECT_EQ(text_.open(nullptr, -3), nullptr);
}

TEST_F(TextTest, WrapsAtWordsThenAnywhereAndHonoursLineEnds) {
    const Size line = text_.measure("x", *font_, 0);
    const auto lines = [&](const char* text, int width) {
        return std::lround(1.0 * text_.measure(text, *font_, width).h / line.h);
    };
    const int narrow = text_.measure("wide word", *font_, 0).w - 1;
    EXPECT_EQ(lines("wide word", narrow), 2);
    EXPECT_EQ(text_.measure("wide word", *font_, narrow).w, text_.measure("word", *font_, 0).w);
    EXPECT_EQ(lines("xxxxxx", 3 * line.w), 2);
    EXPECT_EQ(lines("xxx", 1), 3);
    EXPECT_EQ(lines("one\ntwo\n\nthree", 0), 4);
    EXPECT_EQ(drawn(kBox, "one\ntwo\n\nthree").pixels(), drawn(kBox, "one\r\ntwo\r\n\r\nthree").pixels());
}

TEST_F(TextTest, WithoutWrappingIsOneLineInTheMiddle) {
    const TextStyle line{Align::Start, Wrap::None};
    EXPECT_EQ(drawn(kBox, "one\ntwo", line).pixels(), drawn(kBox, "one two", line).pixels());
    const Rect inked = ink(drawn(kBox, "xxxx", line));
    EXPECT_NEAR(inked.y + inked.h / 2, kBox.y + kBox.h / 2, 5);
    const Rect small{50, 100, 200, 40};
    EXPECT_EQ(drawn(small, repeated("x", 500), line).pixels(), drawn(small, repeated("x", 600), line).pixels());
    EXPECT_NE(drawn(small, repeated("x", 500), line).pixels(), drawn(small, repeated("x", 500)).pixels());
}

TEST_F(TextTest, MeasuresWhatItDraws) {
    for (const char* script : {kLatin, kHebrew, kThai}) {
        const Size size = text_.measure(script, *font_, 300);
        const Rect inked = ink(drawn({50, 40, 300, 320}, script));
        EXPECT_NEAR(inked.w, size.w, 15);
        EXPECT_LE(inked.h, size.h);
        EXPECT_GT(inked.h, size.h / 2);
    }
    EXPECT_EQ(text_.measure("", *font_, 100), (Size{0, text_.measure("x", *font_, 0).h}));
}

TEST_F(TextTest, SizeFollowsDensityAndScale) {
    // 48 units are 0.3 inch; the line is a little higher than the size.
    for (const Device& device : {Device{600, 800, 160, 1.0}, Device{600, 800, 160, 2.0}, Device{600, 800, 320, 1.0}}) {
        Text text(device);
        const int height = text.measure("x", *text.open("DejaVu Sans", 48), 0).h;
        EXPECT_NEAR(height, 48 * device.dpi * device.scale / 160 * 1.17, 3);
    }
}

TEST_F(TextTest, DrawsInItsColourAndAntialiased) {
    Screen screen({300, 60}, PixelFormat::Rgb24);
    text_.draw(screen, {0, 0, 300, 60}, "Colour", *font_, {Align::Start, Wrap::Words, 0x0080FF});
    int full = 0;
    int partial = 0;
    for (const std::uint8_t* pixel = screen.pixels().at(0, 0); pixel != screen.pixels().at(0, 59); pixel += 3) {
        ASSERT_EQ(pixel[2], 0xFF);
        ASSERT_LE(pixel[0], pixel[1]);
        full += pixel[0] == 0 && pixel[1] == 0x80 ? 1 : 0;
        partial += pixel[0] > 0x40 && pixel[0] < 0xC0 ? 1 : 0;
    }
    EXPECT_GT(full, 0);
    EXPECT_GT(partial, 0);
}

TEST_F(TextTest, CombiningMarksShareTheirLetter) {
    EXPECT_EQ(text_.measure("e\u0301\u0323", *font_, 0).w, text_.measure("e", *font_, 0).w);
    EXPECT_LT(text_.measure("لا", *font_, 0).w, text_.measure("ل", *font_, 0).w + text_.measure("ا", *font_, 0).w);
}

TEST_F(TextTest, FamiliesAreFoundInAnyCaseAndUnknownOnesGiveTheDefault) {
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

TEST_F(TextTest, FamiliesAreSortedAndFreeOfCommas) {
    const std::vector<std::string>& families = text_.families();
    for (const int index : {0, 1, 2}) EXPECT_THAT(families, testing::Contains(text_.defaultFamily(index)));
    EXPECT_EQ(std::adjacent_find(families.begin(), families.end()), families.end());
    EXPECT_THAT(families, testing::Not(testing::Contains(testing::HasSubstr(","))));
    EXPECT_LT(std::find(families.begin(), families.end(), "DejaVu Sans"),
              std::find(families.begin(), families.end(), "Noto Sans"));
}

TEST_F(TextTest, OnlyFamiliesWithoutTheirNamesLettersHaveASample) {
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

TEST_F(TextTest, BrokenUtf8IsDrawnAsReplacementCharacters) {
    EXPECT_EQ(drawn(kBox, "a\xE2\x82z\xFF").pixels(), drawn(kBox, "a\uFFFDz\uFFFD").pixels());
}

}  // namespace
}  // namespace host
