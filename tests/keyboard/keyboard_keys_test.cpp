#include <gmock/gmock.h>

#include "keyboard/keyboard_fixture.h"

namespace host {
namespace {

using testing::Each;
using KeysTest = KeyboardTest;

TEST_F(KeysTest, TapsTypeAWord) {
    open();
    tap({"c", "o", "l", "o", "u", "r", "space", "i", "n", "k", "."});
    EXPECT_EQ(confirm(), "colour ink.");
    EXPECT_EQ(entry, "keyboard \"colour ink.\"");
    EXPECT_EQ(calledBack, buffer.data());
}

TEST_F(KeysTest, ShiftHoldsForOneLetterOrUntilTappedAgain) {
    open();
    tap({"shift", "A", "b", "shift", "shift", "C", "D", "shift", "e"});
    EXPECT_EQ(confirm(), "AbCDe");
}

TEST_F(KeysTest, SignsHaveTwoPages) {
    open();
    tap({"page", "1", "%", "shift", "~", "[", "shift", "2", "page", "q"});
    EXPECT_EQ(confirm(), "1%~[2q");
}

TEST_F(KeysTest, LanguageKeyGoesRoundAllLayouts) {
    on(defaultPanel(), "de");
    open();
    tap({"ü", "language"});
    EXPECT_FALSE(keyboard->keyRect("ü"));
    tap({"y", "language", "ش", "language", "ñ", "language", "é", "language", "ё", "language", "ß"});
    EXPECT_EQ(confirm(), "üyشñéёß");
}

TEST_F(KeysTest, EditKeysWorkAtTheCursor) {
    open("abc");
    tap({"left", "backspace", "x", "right", "return", "y", "up", "left", "z"});
    EXPECT_EQ(confirm(), "zaxc\ny");
}

TEST_F(KeysTest, ClearEmptiesTheField) {
    open("something to lose");
    tap({"clear", "a"});
    EXPECT_EQ(confirm(), "a");
}

TEST_F(KeysTest, BackspaceTakesAWholeEmoji) {
    open("a👨‍👩‍👧");
    tap({"backspace"});
    EXPECT_EQ(confirm(), "a");
}

TEST_F(KeysTest, AnUpWithoutItsDownPressesNothing) {
    open("abc");
    for (const char* name : {"ok", "cancel", "clear", "backspace", "q"}) send(kPointerUp, middle(key(name)));
    send(kPointerMove, middle(key("w")));
    send(kPointerUp, middle(key("w")));
    EXPECT_FALSE(keyboard->closed());
    EXPECT_TRUE(test->display.areas.empty());
    EXPECT_EQ(confirm(), "abc");
}

TEST_F(KeysTest, LeavingAKeyPressesNothing) {
    open();
    send(kPointerDown, middle(key("q")));
    send(kPointerMove, middle(key("w")));
    send(kPointerUp, middle(key("w")));
    send(kPointerDown, middle(key("ok")));
    send(kPointerReport, {0, 0});
    send(kPointerUp, middle(key("ok")));
    EXPECT_FALSE(keyboard->closed());
    EXPECT_EQ(confirm(), "");
}

TEST_F(KeysTest, AKeyPressRefreshesTheKeyAndItsTextLine) {
    open("first line\nsecond line");
    tap({"q"});
    const Rect field = *keyboard->textPlace();
    ASSERT_EQ(test->display.areas.size(), 3U);
    EXPECT_EQ(test->display.areas[0], key("q"));
    EXPECT_EQ(test->display.areas[1], key("q"));
    const Rect line = test->display.areas[2];
    EXPECT_EQ(line.intersected(field), line);
    EXPECT_LT(line.h, field.h / 2);
}

TEST_F(KeysTest, NothingOutsideTheKeyboardIsRefreshed) {
    open("some text", kMaxBytes, kAtTop);
    tap({"shift", "A", "page", "language", "clear", "left", "space", "return", "ok"});
    for (const Rect& area : test->display.areas) EXPECT_EQ(area.intersected(keyboard->area()), area);
}

/// What a paint in parts leaves on the screen is what painting all of it would give.
TEST_F(KeysTest, PartsPaintedAddUpToTheWhole) {
    for (const Device& device : {defaultPanel(), smallGreyPanel()}) {
        on(device);
        open("Some text that is long enough to wrap around in the field, गुरु\nand a l̂̂̂̂̂");
        tap({"q", "backspace", "backspace", "up", "x", "return", "left", "left", "backspace", "up", "shift", "W",
             "page", "shift", "page", "down", "right"});
        const Framebuffer inParts = test->screen.pixels();
        keyboard->paint();
        EXPECT_EQ(inParts, test->screen.pixels());
    }
}

}  // namespace
}  // namespace host
