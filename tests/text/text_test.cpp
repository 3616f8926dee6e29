#include <cmath>
#include <limits>
#include <random>

#include "text/text_fixture.h"

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
    EXPECT_LT(ink(drawn(kBox, "Latin")).right(), middle);
    EXPECT_GT(ink(drawn(kBox, "مرحبا")).x, middle);
    EXPECT_GT(ink(drawn(kBox, "שלום 123 abc")).x, middle);
    EXPECT_LT(ink(drawn(kBox, "مرحبا", {Align::End})).right(), middle);
    EXPECT_GT(ink(drawn(kBox, "Latin", {Align::End})).x, middle);
    EXPECT_NEAR(static_cast<double>(ink(drawn(kBox, "ooo", {Align::Centre})).x +
                                    ink(drawn(kBox, "ooo", {Align::Centre})).right()) /
                    2,
                middle, 2);
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

TEST_F(TextTest, IsCutAtTheEdgesOfItsBox) {
    const Screen whole = drawn({100, 100, 400, 200}, "gjÅ");
    const Rect part{100, 100, 8, 18};
    const Screen cut = drawn(part, "gjÅ", {Align::Start, Wrap::Words});
    EXPECT_EQ(ink(cut).right(), part.right());
    EXPECT_EQ(ink(cut).bottom(), part.bottom());
    for (int y = part.y; y < part.bottom(); ++y) EXPECT_EQ(*whole.pixels().at(103, y), *cut.pixels().at(103, y));
}

TEST_F(TextTest, TakesBoxesAndSizesOfAnyValue) {
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    EXPECT_TRUE(ink(drawn({10, 10, 0, 50}, "x")).empty());
    EXPECT_TRUE(ink(drawn({10, 10, 50, -1}, "x")).empty());
    EXPECT_TRUE(ink(drawn({kMost, kMost, kMost, kMost}, "x")).empty());
    EXPECT_TRUE(ink(drawn({kLeast, kLeast, kMost, kMost}, "x")).empty());
    EXPECT_FALSE(ink(drawn({0, 0, kMost, kMost}, "x")).empty());
    for (const Wrap wrap : {Wrap::Words, Wrap::None}) {
        for (const Align align : {Align::Start, Align::Centre, Align::End}) {
            drawn({-kMost / 2, -kMost / 2, kMost, kMost}, repeated("x\n", 1023), {align, wrap});
            drawnIn(font_s{"DejaVu Sans", kMost}, {kLeast, kLeast, kMost, kMost}, "x", {align, wrap});
        }
    }
    EXPECT_FALSE(ink(drawnIn(font_s{"DejaVu Sans", kMost}, device_.bounds(), repeated("x\n", 1023))).empty());
    EXPECT_EQ(text_.open(nullptr, 0), nullptr);
    EXPECT_EQ(text_.open(nullptr, -3), nullptr);
}

TEST_F(TextTest, WrapsAtWordsThenAnywhere) {
    const Size line = text_.measure("x", *font_, 0);
    const auto lines = [&](const char* text, int width) {
        return std::lround(1.0 * text_.measure(text, *font_, width).h / line.h);
    };
    const int narrow = text_.measure("wide word", *font_, 0).w - 1;
    EXPECT_EQ(lines("wide word", narrow), 2);
    EXPECT_EQ(text_.measure("wide word", *font_, narrow).w,
              std::max(text_.measure("wide", *font_, 0).w, text_.measure("word", *font_, 0).w));
    EXPECT_EQ(lines("xxxxxx", 3 * line.w), 2);
    EXPECT_EQ(lines("xxx", 1), 3);
}

TEST_F(TextTest, HonoursLineEnds) {
    const Screen reference = drawn(kBox, "one\ntwo\n\nthree");
    EXPECT_EQ(reference.pixels(), drawn(kBox, "one\r\ntwo\r\n\r\nthree").pixels());
    EXPECT_NEAR(text_.measure("one\ntwo\n\nthree", *font_, 0).h, 4 * text_.measure("one", *font_, 0).h, 4);
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
    bool full = false;
    bool partial = false;
    for (int x = 0; x < 300; ++x) {
        for (int y = 0; y < 60; ++y) {
            const std::uint8_t* pixel = screen.pixels().at(x, y);
            ASSERT_EQ(pixel[2], 0xFF);
            ASSERT_LE(pixel[0], pixel[1]);
            full |= pixel[0] == 0 && pixel[1] == 0x80;
            partial |= pixel[0] > 0x40 && pixel[0] < 0xC0;
        }
    }
    EXPECT_TRUE(full);
    EXPECT_TRUE(partial);
}

TEST_F(TextTest, CombiningMarksShareTheirLetter) {
    EXPECT_EQ(text_.measure("e\u0301\u0323", *font_, 0).w, text_.measure("e", *font_, 0).w);
    EXPECT_LT(text_.measure("لا", *font_, 0).w, text_.measure("ل", *font_, 0).w + text_.measure("ا", *font_, 0).w);
}

}  // namespace
}  // namespace host
