#include "platform/host/desk/keyboard_text.h"

#include <gtest/gtest.h>

namespace host {
namespace {

constexpr std::size_t kRoomy = 1023;

/// Each is one character to a reader, however many codes it is made of.
TEST(KeyboardText, KeepsACharacterWhole) {
    for (const std::string character : {"a", "ü", "e\u0301", "a\u0302\u0323", "नि", "\u1112\u1161\u11AB", "🇩🇪",
                                        "👨‍👩‍👧‍👦", "👍🏽", "1\uFE0F\u20E3", "\n"}) {
        SCOPED_TRACE(character);
        KeyboardText text("x" + character + character, kRoomy);
        text.eraseBefore();
        EXPECT_EQ(text.text(), "x" + character);
        for (std::size_t inside = 1; inside <= character.size(); ++inside) {
            text.moveTo(inside);
            EXPECT_EQ(text.cursor(), 1U);
        }
        text.moveForward();
        EXPECT_EQ(text.cursor(), text.text().size());
        text.moveBack();
        text.eraseAfter();
        EXPECT_EQ(text.text(), "x");

        for (std::size_t limit = 0; limit < 3 * character.size(); ++limit) {
            KeyboardText typed("", limit);
            typed.insert(character + character + character);
            EXPECT_EQ(typed.text().size(), limit / character.size() * character.size());
            KeyboardText replaced("", limit);
            replaced.set(character + character + character);
            EXPECT_EQ(replaced.text(), typed.text());
        }
    }
}

TEST(KeyboardText, TypesAtTheCursor) {
    KeyboardText text("ac", kRoomy);
    text.moveBack();
    text.insert("b");
    EXPECT_EQ(text.text(), "abc");
    text.insert("\u0301");
    EXPECT_EQ(text.cursor(), 4U);
    text.eraseBefore();
    EXPECT_EQ(text.text(), "ac") << "the mark had joined its letter";

    KeyboardText full("1234é", 6);
    full.moveTo(0);
    full.insert("x");
    EXPECT_EQ(full.text(), "1234é") << "what stands is not pushed out";
    EXPECT_EQ(full.cursor(), 0U);
}

TEST(KeyboardText, PastesOnlyText) {
    KeyboardText text("", kRoomy);
    text.insert(
        "a\r\nb\rc\td\a"
        "e\n\nf\xFFg");
    EXPECT_EQ(text.text(), "a\nb\nc de\n\nf\uFFFDg");
    for (std::size_t length = 0; length < 40; ++length) {
        std::string bytes;
        for (std::size_t i = 0; i < length; ++i) bytes += static_cast<char>(1 + (i * 151 + length * 37) % 255);
        KeyboardText any(bytes, 30);
        any.eraseAfter();
        any.moveForward();
        any.moveTo(length / 2);
        any.insert(bytes);
        for (int times = 0; times < 40; ++times) any.eraseBefore();
        any.moveBack();
        EXPECT_LE(any.text().size(), 30U);
        EXPECT_EQ(any.cursor(), 0U);
    }
}

}  // namespace
}  // namespace host
