#include "platform/host/screen/text.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "platform/host/base/utf8.h"
#include "screen/pixels.h"

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
        for (const auto [x, y] : everyPixel(screen.pixels().size())) {
            if (*screen.pixels().at(x, y) != 0xFF) inked = inked.united({x, y, 1, 1});
        }
        return inked;
    }

    static bool inside(Rect inner, Rect outer) { return inner.empty() || inner.intersected(outer) == inner; }

    Device device_{600, 400, 167, 1.0, false, 0};
    Text text_{device_};
    std::unique_ptr<font_s> font_ = text_.open(nullptr, 24);
};

TEST_F(TextTest, EveryScriptHasItsLettersFillsTheBoxAndStaysInside) {
    const Rect missing = ink(drawn(kBox, repeated("\x01", 8)));
    for (const char* words : {kLatin, kArabic, kHebrew, kDevanagari, kThai}) {
        SCOPED_TRACE(words);
        const Rect inked = ink(drawn(kBox, repeated(words, 1023)));
        EXPECT_TRUE(inside(inked, kBox));
        EXPECT_GT(inked.w, kBox.w * 8 / 10);
        EXPECT_GT(inked.h, kBox.h * 6 / 10);
        const Rect shaped = ink(drawn(kBox, repeated(words, 24)));
        EXPECT_FALSE(shaped.empty());
        EXPECT_NE(shaped.size(), missing.size());
    }
}

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

TEST_F(TextTest, ASmallScreenShowsItsPartOfALargeOne) {
    constexpr int kMargin = 300;
    const auto font = text_.open(nullptr, 300);
    const TextBlock block = text_.layOut(repeated("MÅ@#", 200), *font, 2000);
    for (const Point at : {Point{0, 0}, Point{-200, -150}, Point{-700, -250}, Point{-1500, -1100}, Point{250, 180}}) {
        for (const Rect clip : {Rect{-300, -300, 1200, 1000}, Rect{100, 50, 301, 277}}) {
            const auto drawn = [&](int margin) {
                Screen screen({600 + 2 * margin, 400 + 2 * margin}, PixelFormat::Rgb24);
                const Rect moved{clip.x + margin, clip.y + margin, clip.w, clip.h};
                block.draw(screen, {at.x + margin, at.y + margin}, moved, 0x804020);
                return screen.pixels();
            };
            const Framebuffer small = drawn(0);
            EXPECT_NE(small, Framebuffer(small.size(), small.format()));
            EXPECT_EQ(firstDifference(small, drawn(kMargin), 0, kMargin), kNowhere);
        }
    }
}

/// A line is as long as it is wide, even in a box that reaches far out of the screen.
TEST_F(TextTest, ALineIsCutOnlyWhereItHasNoRoom) {
    const auto wide = text_.open(nullptr, 60);
    for (const char* words : {"Several words", "مرحبا بالعالم"}) {
        const int width = text_.fitLine(words, *wide, {5000, 500}, 60).size().w;
        const auto drawn = [&](Rect box, Align align) { return ink(drawnIn(*wide, box, words, {align, Wrap::None})); };
        const Rect whole = drawn({20, 100, 500, 200}, Align::Centre);
        EXPECT_EQ(drawn({20 + (500 - width) / 2, 100, width, 200}, Align::Start).size(), whole.size());
        EXPECT_EQ(drawn({-100000, 100, 200540, 200}, Align::Centre).size(), whole.size());
        EXPECT_LT(drawn({20, 100, width - 1, 200}, Align::Start).w, whole.w) << "an ellipsis for the last letter";
        EXPECT_NEAR(whole.y + whole.h / 2, 200, wide->size / 4);
    }
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

TEST_F(TextTest, TallAccentsOfTheFirstLineAreWhole) {
    const int whole = ink(drawn(kBox, "\nẦẪ")).h;
    EXPECT_EQ(ink(drawn(kBox, "ẦẪ")).h, whole);
    EXPECT_GE(ink(drawn(kBox, "ẦẪ")).y, kBox.y);
}

TEST_F(TextTest, SizeFollowsDensityAndScale) {
    // 48 units are 0.3 inch; the line is a little higher than the size.
    for (const Device& device : {Device{600, 800, 160, 1.0}, Device{600, 800, 160, 2.0}, Device{600, 800, 320, 1.0}}) {
        Text text(device);
        const int height = text.measure("x", *text.open("DejaVu Sans", 48), 0).h;
        EXPECT_NEAR(height, 48 * device.dpi * device.scale / 160 * 1.17, 3);
    }
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

TEST_F(TextTest, FamiliesThatWriteTheLanguageComeFirst) {
    for (const auto& [language, writing, other] :
         {std::tuple{"de", "Noto Serif", "Noto Naskh Arabic"}, std::tuple{"ar", "Noto Naskh Arabic", "Noto Serif"}}) {
        const std::vector<std::string> families = text_.families(language);
        const auto isOther = [other = other](const std::string& family) { return family == other; };
        const auto end = std::find_if(families.begin(), families.end(), isOther);
        EXPECT_TRUE(std::find(families.begin(), end, writing) != end && end != families.end()) << language;
    }
}

/// Where directions meet, a step never leads back, and the bar stands where the keys' next letter would.
TEST_F(TextTest, StepsGoWhereTheArrowPoints) {
    for (const char* mixed : {"abc كتاب def", "كتاب abc كتاب", "one two"}) {
        for (const bool fromRight : {false, true}) {
            const TextBlock block = text_.layOut(mixed, *font_, 500);
            const auto x = [&](std::size_t offset) { return block.cursor(offset, fromRight).x; };
            for (const bool toRight : {false, true}) {
                std::size_t at = block.offsetAt({toRight ? 0 : 500, 5});
                for (std::size_t next = block.beside(at, fromRight, toRight); next != at;
                     at = std::exchange(next, block.beside(next, fromRight, toRight))) {
                    EXPECT_TRUE(toRight ? x(next) >= x(at) : x(next) <= x(at)) << mixed << ' ' << at << ' ' << next;
                }
                const int end = toRight ? 499 : 1;
                EXPECT_EQ(x(at), x(block.offsetAt({end, 5}))) << mixed << " to the end";
            }
        }
    }
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
