#include "platform/host/screen/text.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "platform/host/base/utf8.h"
#include "screen/pixels.h"

namespace {

using namespace host;

constexpr Rect kBox{50, 40, 500, 320};
constexpr const char* kScripts[] = {"The quick brown fox jumps over the lazy dog. ", "مرحبا بالعالم هذا نص عربي ",
                                    "שלום עולם זה טקסט ", "नमस्ते दुनिया क्षत्रिय संस्कृति ", "สวัสดีชาวโลกภาษาไทยไม่มีช่องว่าง"};

/// The words again and again, cut to exactly that many bytes, be it inside a character.
std::string repeated(std::string_view words, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += words;
    return text.substr(0, bytes);
}

/// A grey 600 × 400 screen with the default font in 24 units (25 pixels at 167 dpi).
struct TextTest : testing::Test {
    Framebuffer drawn(Rect box, std::string_view utf8, const TextStyle& style = {}, const char* family = nullptr,
                      int size = 24) {
        Screen screen(device.bounds().size(), PixelFormat::Grey8);
        text.draw(screen, box, utf8, *text.open(family, size), style);
        return screen.pixels();
    }

    /// The smallest rectangle around all that is not white.
    static Rect ink(const Framebuffer& pixels) {
        Rect inked;
        for (const auto [x, y] : everyPixel(pixels.size()))
            if (*pixels.at(x, y) != 0xFF) inked = inked.united({x, y, 1, 1});
        return inked;
    }

    Device device{600, 400, 167, 1.0, false, 0};
    Text text{device};
    std::unique_ptr<font_s> font = text.open(nullptr, 24);
};

TEST_F(TextTest, EveryScriptHasItsLettersAndFillsTheBox) {
    const Size missing = ink(drawn(kBox, repeated("\x01", 8))).size();
    for (const char* words : kScripts) {
        const Rect inked = ink(drawn(kBox, repeated(words, 1023))), shaped = ink(drawn(kBox, repeated(words, 24)));
        EXPECT_TRUE(inked.w > kBox.w * 8 / 10 && inked.h > kBox.h * 6 / 10) << words;
        EXPECT_TRUE(!shaped.empty() && shaped.size() != missing) << words;
    }
}

TEST_F(TextTest, StartsOnTheSideOfItsScript) {
    const int middle = kBox.x + kBox.w / 2;
    for (const auto& [words, leftwards] : {std::pair("Latin", false), {"مرحبا", true}, {"שלום 123 abc", true}}) {
        EXPECT_EQ(ink(drawn(kBox, words, {Align::Start})).x > middle, leftwards) << words;
        EXPECT_EQ(ink(drawn(kBox, words, {Align::End})).x > middle, !leftwards) << words;
    }
    const Rect centred = ink(drawn(kBox, "ooo", {Align::Centre}));
    EXPECT_NEAR(centred.x + centred.w / 2, middle, 2);
}

TEST_F(TextTest, NeverLeavesItsBoxAndIsTheSameOnALargerScreen) {
    constexpr int kMargin = 150;
    std::mt19937 random(7);
    const auto number = [&random](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
    for (int round = 0; round < 300; ++round) {
        const Rect box{number(-150, 120), number(-150, 100), number(-5, 250), number(-5, 200)};
        const std::string words = repeated(kScripts[round % 5], static_cast<std::size_t>(number(0, 200)));
        const TextStyle style{static_cast<Align>(number(0, 2)), static_cast<Wrap>(number(0, 1))};
        const auto large = text.open(nullptr, number(1, 200));
        const auto on = [&](int margin) {
            Screen screen({100 + 2 * margin, 80 + 2 * margin}, PixelFormat::Grey8);
            text.draw(screen, {box.x + margin, box.y + margin, box.w, box.h}, words, *large, style);
            return screen.pixels();
        };
        const Framebuffer small = on(0);
        ASSERT_EQ(ink(small).united(box.intersected(small.bounds())), box.intersected(small.bounds())) << round;
        ASSERT_EQ(firstDifference(small, on(kMargin), 0, kMargin), kNowhere) << round;
    }
}

/// A line is as long as it is wide, even in a box that reaches far out of the screen.
TEST_F(TextTest, ALineIsCutOnlyWhereItHasNoRoom) {
    for (const char* words : {"Several words", "مرحبا بالعالم"}) {
        font->size = 60;
        const int width = text.fitLine(words, *font, {5000, 500}, 60).size().w;
        const auto line = [&](int x, int room, Align align) {
            return ink(drawn({x, 100, room, 200}, words, {align, Wrap::None}, nullptr, 60));
        };
        const Rect whole = line(20, 500, Align::Centre);
        EXPECT_EQ(line(20 + (500 - width) / 2, width, Align::Start).size(), whole.size());
        EXPECT_EQ(line(-100000, 200540, Align::Centre).size(), whole.size());
        EXPECT_LT(line(20, width - 1, Align::Start).w, whole.w) << "an ellipsis for the last letter";
        EXPECT_NEAR(whole.y + whole.h / 2, 200, 15);
    }
}

TEST_F(TextTest, WrapsAtWordsThenAnywhereAndHonoursLineEnds) {
    const Size line = text.measure("x", *font, 0);
    const int narrow = text.measure("wide word", *font, 0).w - 1;
    for (const auto& [words, width, lines] : {std::tuple("wide word", narrow, 2), std::tuple("xxxxxx", 3 * line.w, 2),
                                              std::tuple("xxx", 1, 3), std::tuple("one\ntwo\n\nthree", 0, 4)})
        EXPECT_EQ(std::lround(1.0 * text.measure(words, *font, width).h / line.h), lines) << words;
    EXPECT_EQ(text.measure("wide word", *font, narrow).w, text.measure("word", *font, 0).w);
    EXPECT_EQ(drawn(kBox, "one\ntwo\n\nthree"), drawn(kBox, "one\r\ntwo\r\n\r\nthree"));
}

TEST_F(TextTest, TallAccentsOfTheFirstLineAreWhole) { EXPECT_EQ(ink(drawn(kBox, "ẦẪ")).h, ink(drawn(kBox, "\nẦẪ")).h); }

TEST_F(TextTest, SizeFollowsDensityAndScale) {
    // 48 units are 0.3 inch; the line is a little higher than the size.
    for (const Device& panel : {Device{600, 800, 160, 1.0}, Device{600, 800, 160, 2.0}, Device{600, 800, 320, 1.0}})
        EXPECT_NEAR(Text(panel).measure("x", {"DejaVu Sans", 48}, 0).h, 48 * panel.dpi * panel.scale / 160 * 1.17, 3);
}

TEST_F(TextTest, FamiliesAreFoundInAnyCaseAndUnknownOnesGiveTheDefault) {
    for (const char* unknown : {"No Such Font", "", "\xFF\xFE", ",", "Sans", static_cast<const char*>(nullptr)})
        EXPECT_EQ(text.open(unknown, 24)->family, text.defaultFamily(0));
    EXPECT_STREQ(text.defaultFamily(7), text.defaultFamily(0));
    EXPECT_EQ(text.open("Serif", 24)->family, text.defaultFamily(1));
    EXPECT_EQ(text.open("dejavu serif", 24)->family, "DejaVu Serif");
    EXPECT_NE(drawn(kBox, "Test", {}, "DejaVu Serif"), drawn(kBox, "Test"));
    const auto narrow = text.open("monospace", 24);
    EXPECT_EQ(text.measure("iiii", *narrow, 0).w, text.measure("MMMM", *narrow, 0).w);
}

/// Where directions meet, a step never leads back, and the bar stands where the keys' next letter would.
TEST_F(TextTest, StepsGoWhereTheArrowPoints) {
    for (const char* mixed : {"abc كتاب def", "كتاب abc كتاب", "one two"}) {
        const TextBlock block = text.layOut(mixed, *font, 500);
        for (const auto& [fromRight, toRight] : {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
            const auto x = [&, right = fromRight](std::size_t offset) { return block.cursor(offset, right).x; };
            std::size_t at = block.offsetAt({toRight ? 0 : 500, 5});
            for (std::size_t next = block.beside(at, fromRight, toRight); next != at;
                 at = std::exchange(next, block.beside(next, fromRight, toRight)))
                EXPECT_TRUE(toRight ? x(next) >= x(at) : x(next) <= x(at)) << mixed << ' ' << at << ' ' << next;
            EXPECT_EQ(x(at), x(block.offsetAt({toRight ? 499 : 1, 5}))) << mixed << " to the end";
        }
    }
}

/// Examples of the Unicode Standard, section 3.9, and what they leave open.
TEST_F(TextTest, ReplacesEachBrokenPartOfUtf8Once) {
    const std::string extremes = "\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF";
    EXPECT_EQ(repairedUtf8(extremes), extremes);
    EXPECT_EQ(repairedUtf8("\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41"), repeated("\uFFFD", 24) + "A");
    EXPECT_EQ(repairedUtf8("\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42"), repeated("\uFFFD", 15) + "A\uFFFD\uFFFDB");
    EXPECT_EQ(repairedUtf8("\xF0\x8F\xBF\xBF\xC3(\xF0\x9F\x98"), repeated("\uFFFD", 15) + "(\uFFFD");
    EXPECT_EQ(repairedUtf8({"a\0b", 3}), "a\uFFFDb");
    EXPECT_EQ(drawn(kBox, "a\xE2\x82z\xFF"), drawn(kBox, "a\uFFFDz\uFFFD"));
}

}  // namespace
