#include "platform/host/desk/keyboard_text.h"

#include <gtest/gtest.h>

namespace host {
namespace {

constexpr std::size_t kRoomy = 1023;

struct Sample {
    const char* name;
    const char* character;
};

/// Each is one character to a reader, however many codes it is made of.
const Sample kCharacters[] = {
    {"Letter", "a"},
    {"Umlaut", "ü"},
    {"CombiningAcute", "e\u0301"},
    {"TwoMarks", "a\u0302\u0323"},
    {"Devanagari", "नि"},
    {"HangulParts", "\u1112\u1161\u11AB"},
    {"Flag", "🇩🇪"},
    {"Family", "👨‍👩‍👧‍👦"},
    {"SkinTone", "👍🏽"},
    {"Keycap", "1\uFE0F\u20E3"},
    {"LineBreak", "\n"},
};

class OneCharacter : public testing::TestWithParam<Sample> {};

TEST_P(OneCharacter, IsErasedWhole) {
    const std::string character = GetParam().character;
    KeyboardText text("x" + character + character, kRoomy);
    text.eraseBefore();
    EXPECT_EQ(text.text(), "x" + character);
    text.moveToLineStart();
    text.moveTo(1);
    text.eraseAfter();
    EXPECT_EQ(text.text(), "x");
}

TEST_P(OneCharacter, IsOneStepForTheCursor) {
    const std::string character = GetParam().character;
    KeyboardText text(character + "x", kRoomy);
    text.moveBack();
    text.moveBack();
    EXPECT_EQ(text.cursor(), 0U);
    text.moveForward();
    EXPECT_EQ(text.cursor(), character.size());
    for (std::size_t inside = 0; inside < character.size(); ++inside) {
        text.moveTo(inside);
        EXPECT_EQ(text.cursor(), 0U) << inside;
    }
}

TEST_P(OneCharacter, IsNeverCutByTheLimit) {
    const std::string character = GetParam().character;
    for (std::size_t limit = 0; limit < 3 * character.size(); ++limit) {
        const std::size_t whole = limit / character.size() * character.size();
        KeyboardText typed("", limit);
        typed.insert(character + character + character);
        EXPECT_EQ(typed.text().size(), whole) << limit;
        KeyboardText replaced("", limit);
        replaced.set(character + character + character);
        EXPECT_EQ(replaced.text().size(), whole) << limit;
    }
}

INSTANTIATE_TEST_SUITE_P(KeyboardText, OneCharacter, testing::ValuesIn(kCharacters),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(KeyboardText, TypesAtTheCursor) {
    KeyboardText text("ac", kRoomy);
    text.moveBack();
    text.insert("b");
    EXPECT_EQ(text.text(), "abc");
    EXPECT_EQ(text.cursor(), 2U);
}

TEST(KeyboardText, KeepsWhatStandsWhenThereIsNoRoom) {
    KeyboardText text("1234é", 6);
    text.moveTo(0);
    text.insert("x");
    EXPECT_EQ(text.text(), "1234é");
    EXPECT_EQ(text.cursor(), 0U);
}

TEST(KeyboardText, MarkJoinsTheLetterBeforeTheCursor) {
    KeyboardText text("ex", kRoomy);
    text.moveBack();
    text.insert("\u0301");
    EXPECT_EQ(text.cursor(), 3U);
    text.eraseBefore();
    EXPECT_EQ(text.text(), "x");
}

TEST(KeyboardText, ErasesNothingBeyondItsEnds) {
    KeyboardText text("a", kRoomy);
    text.eraseAfter();
    text.moveForward();
    EXPECT_EQ(text.text(), "a");
    text.eraseBefore();
    text.eraseBefore();
    text.moveBack();
    EXPECT_EQ(text.text(), "");
    EXPECT_EQ(text.cursor(), 0U);
}

TEST(KeyboardText, HomeAndEndStayInTheLine) {
    KeyboardText text("one\ntwo\nthree", kRoomy);
    text.moveTo(5);
    text.moveToLineEnd();
    EXPECT_EQ(text.cursor(), 7U);
    text.moveToLineStart();
    EXPECT_EQ(text.cursor(), 4U);
    text.moveToLineStart();
    EXPECT_EQ(text.cursor(), 4U);
}

TEST(KeyboardText, PastesOnlyText) {
    KeyboardText text("", kRoomy);
    text.insert(
        "a\r\nb\rc\td\x07"
        "e\n\nf\xFFg");
    EXPECT_EQ(text.text(), "a\nb\nc de\n\nf\uFFFDg");
}

TEST(KeyboardText, TakesAnyBytes) {
    for (std::size_t length = 0; length < 40; ++length) {
        std::string bytes;
        for (std::size_t i = 0; i < length; ++i) bytes += static_cast<char>(1 + (i * 151 + length * 37) % 255);
        KeyboardText text(bytes, 30);
        text.moveTo(length / 2);
        text.insert(bytes);
        text.eraseBefore();
        EXPECT_LE(text.text().size(), 30U);
        EXPECT_LE(text.cursor(), text.text().size());
    }
}

}  // namespace
}  // namespace host
