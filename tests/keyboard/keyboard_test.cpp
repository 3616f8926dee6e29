#include "platform/host/keyboard/keyboard.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "platform/host/keyboard/keyboard_text.h"
#include "platform/host/touch/pointer_event.h"
#include "support/test_desk.h"

namespace host {
namespace {

/// A keyboard over its screen and a hand that taps its keys.
struct KeyboardTest : testing::Test {
    static constexpr int kAtTop = 0x400;
    static constexpr int kMaxBytes = 1023;

    void open(const std::string& text = "", int maxBytes = kMaxBytes, int flags = 0) {
        buffer = text;
        buffer.resize(2048);
        calledBack = nullptr;
        const KeyboardRequest request{"@TextDirection", buffer.data(), maxBytes, flags, remember};
        keyboard = std::make_unique<Keyboard>(test->desk, request);
        keyboard->paint();
        test->display.areas.clear();
    }
    void on(const Device& device, const std::string& language = "en") { test.emplace(device, language); }

    void send(int type, const std::string& name) {
        const std::optional<Rect> key = keyboard->keyRect(name);
        ASSERT_TRUE(key.has_value()) << name;
        keyboard->pointer(type, {key->x + key->w / 2, key->y + key->h / 2});
    }
    void tapAt(Point at) {
        keyboard->pointer(kPointerDown, at);
        keyboard->pointer(kPointerUp, at);
    }
    /// Taps keys by their names, separated by spaces.
    void tap(const std::string& names) {
        std::istringstream words(names);
        for (std::string name; words >> name;) {
            send(kPointerDown, name);
            send(kPointerUp, name);
        }
    }
    void press(std::initializer_list<Key> keys) {
        for (const Key key : keys) keyboard->key(key);
    }

    /// Presses OK and returns what the application gets.
    std::string confirm() {
        tap("ok");
        return callBack();
    }
    std::string callBack() {
        EXPECT_TRUE(keyboard->closed());
        const auto callback = keyboard->takeCallback();
        if (!callback) return "no callback";
        entry = callback->entry;
        callback->run();
        EXPECT_EQ(calledBack, buffer.data());
        return buffer.c_str();
    }

    std::string buffer;
    std::optional<TestDesk> test{std::in_place};
    std::unique_ptr<Keyboard> keyboard;
    std::string entry;

private:
    static void remember(char* text) { calledBack = text; }
    static inline char* calledBack = nullptr;
};

TEST_F(KeyboardTest, TapsTypeAndEdit) {
    const struct {
        const char *language, *before, *keys, *after;
    } cases[] = {
        {"en", "", "c o l o u r space i n k .", "colour ink."},
        {"en", "", "shift A b shift shift C D shift e", "AbCDe"},
        {"en", "", "page 1 % shift ~ [ shift 2 page q", "1%~[2q"},
        {"de", "", "ü language y language ش language ñ language é language ё language ß", "üyشñéёß"},
        {"en", "abc", "left backspace x right return y up left z", "zaxc\ny"},
        {"en", "something to lose", "clear a", "a"},
        {"en", "a👨‍👩‍👧", "backspace", "a"},
        {"ar", "ابج", "right د", "ابدج"},
        {"ar", "سلس\nسٱس\nسلس", "up up ب down د", "سلسب\nسٱسد\nسلس"},
        {"en", "longer\nsho\nlonger", "left up up x", "longexr\nsho\nlonger"},
    };
    for (const auto& [language, before, keys, after] : cases) {
        on(defaultPanel(), language);
        open(before);
        tap(keys);
        EXPECT_EQ(confirm(), after);
    }
}

TEST_F(KeyboardTest, APhysicalKeyboardEdits) {
    open("abc");
    keyboard->text("déf");
    press({Key::Left, Key::Backspace, Key::Home, Key::Delete, Key::End, Key::ShiftReturn});
    keyboard->text("z");
    press({Key::Up, Key::Right, Key::Down});
    keyboard->text("!");
    press({Key::Return});
    EXPECT_EQ(callBack(), "bcdf\nz!");
}

TEST_F(KeyboardTest, CancelLeavesTheBufferAndCallsBack) {
    for (const auto& cancel : std::initializer_list<std::function<void()>>{
             [&] { tap("cancel"); }, [&] { press({Key::Escape}); }, [&] { keyboard->cancel(); }}) {
        open("before");
        tap("clear x");
        EXPECT_STREQ(buffer.c_str(), "before");
        cancel();
        EXPECT_EQ(callBack(), "before");
        EXPECT_EQ(entry, "keyboard \"before\"");
    }
}

TEST_F(KeyboardTest, NeverWritesBeyondTheLimit) {
    const std::string acutes = "e\u0301e\u0301e\u0301";
    for (const int limit : {0, 1, 2, 3, 4, 5, 6, 8}) {
        open("", limit);
        char& beyond = buffer.at(static_cast<std::size_t>(limit) + 1) = '#';
        keyboard->text(acutes);
        EXPECT_EQ(confirm(), acutes.substr(0, static_cast<std::size_t>(limit / 3) * 3));
        EXPECT_EQ(beyond, '#');
    }
    open("before", 7);
    EXPECT_TRUE(keyboard->type("größer"));
    EXPECT_EQ(callBack(), "größe") << "as a script types";
}

TEST_F(KeyboardTest, ActsOnlyOnAPressThatBeganAndEndedOnOneKey) {
    open("abc");
    for (const char* name : {"ok", "cancel", "clear", "backspace", "q"}) send(kPointerUp, name);
    send(kPointerMove, "w");
    send(kPointerUp, "w");
    EXPECT_TRUE(test->display.areas.empty());
    send(kPointerDown, "q");
    send(kPointerMove, "w");
    send(kPointerUp, "w");
    send(kPointerDown, "ok");
    keyboard->pointer(kPointerReport, {0, 0});
    send(kPointerUp, "ok");
    EXPECT_FALSE(keyboard->closed());
    EXPECT_EQ(confirm(), "abc");
}

/// What a paint in parts leaves on the screen is what painting all of it would give.
TEST_F(KeyboardTest, PartsPaintedAddUpToTheWhole) {
    for (const Device& device : {defaultPanel(), smallGreyPanel()}) {
        on(device);
        open("Some ẦẪỖ text that is long enough to wrap around in the ẦẪỖ field,\nẦẪỖ ẦẪỖ गुरु\nand a l̂̂̂̂̂");
        tap("q backspace backspace up x return left left backspace up left up shift W page shift page down right");
        const Framebuffer inParts = test->screen.pixels();
        keyboard->paint();
        EXPECT_EQ(inParts, test->screen.pixels());
    }
}

TEST_F(KeyboardTest, ATapInTheFieldPlacesTheCursor) {
    open("two one\nthree");
    const Framebuffer other = test->screen.pixels();
    open("one two\nthree");
    EXPECT_FALSE(test->screen.pixels() == other) << "its letters are seen";
    const Rect field = *keyboard->textPlace();
    tapAt({field.x + 2, field.y + 20});
    tap("a");
    tapAt({field.x + field.w - 2, field.y + 20});
    tap("b");
    tapAt({field.x + field.w - 2, field.y + field.h - 2});
    tap("c");
    EXPECT_EQ(confirm(), "aone twob\nthreec");
}

TEST_F(KeyboardTest, TheFieldFollowsTheCursorByWholeLines) {
    const auto firstInSight = [&](const std::string& keys) {
        open("0\n1\n2\n3\n4\n5\n6\n7\n8\n9");
        tap(keys);
        const Rect field = *keyboard->textPlace();
        tapAt({field.x + 2, field.y + 20});
        tap("x");
        const std::string text = confirm();
        return text.at(text.find('x') + 1) - '0';
    };
    const int hidden = firstInSight("");
    EXPECT_TRUE(hidden > 2 && hidden < 9) << hidden;
    EXPECT_EQ(firstInSight("up up"), hidden) << "those are in sight already";
    EXPECT_EQ(firstInSight("up up up up up up up up"), 1);
    EXPECT_EQ(firstInSight("backspace backspace backspace backspace"), hidden - 2) << "no rows stay empty below";
}

TEST_F(KeyboardTest, LiesAtTheEdgeAskedForWithLargeKeysApart) {
    const char* names[] = {"q",    "shift", "page", "language", "space", "backspace", "return", "left",
                           "down", "clear", "ok",   "cancel",   "й",     "ъ",         "ю"};
    for (const Device& device : {defaultPanel(), smallGreyPanel(), Device{.width = 800, .height = 600, .dpi = 167}}) {
        for (const char* language : {"en", "ru"}) {
            on(device, language);
            open("", kMaxBytes, kAtTop);
            EXPECT_EQ(keyboard->area().y, 0);
            open();
            const Rect area = keyboard->area();
            const int highest = device.height * (device.height > device.width ? 45 : 100) / 100;
            EXPECT_TRUE(area.bottom() == device.height && area.w == device.width && area.h <= highest);
            std::vector<Rect> boxes;
            for (const char* name : names)
                if (const auto box = keyboard->keyRect(name)) boxes.push_back(*box);
            for (const Rect& box : boxes) {
                EXPECT_GE(box.h * 25.4, 8.0 * device.dpi);
                EXPECT_EQ(box.intersected(area), box);
                const auto overlapping = [&box](const Rect& other) { return !box.intersected(other).empty(); };
                EXPECT_EQ(std::count_if(boxes.begin(), boxes.end(), overlapping), 1);
            }
        }
    }
}

/// Each is one character to a reader, however many codes it is made of.
TEST(KeyboardText, KeepsACharacterWhole) {
    for (const std::string character : {"a", "ü", "e\u0301", "a\u0302\u0323", "नि", "\u1112\u1161\u11AB", "🇩🇪",
                                        "👨‍👩‍👧‍👦", "👍🏽", "1\uFE0F\u20E3", "\n"}) {
        SCOPED_TRACE(character);
        KeyboardText text("x" + character + character, 1023);
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
