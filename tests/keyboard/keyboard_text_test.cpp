#include "platform/host/keyboard/keyboard_text.h"

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

}  // namespace
}  // namespace host
