#include "platform/host/keyboard/keyboard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>

#include "platform/host/touch/pointer_event.h"
#include "support/test_desk.h"

namespace host {
namespace {

/// A keyboard over its screen and a hand that taps its keys.
struct KeyboardTest : testing::Test {
    void open(const std::string& text = "", int maxBytes = 1023, int flags = 0) {
        buffer = text;
        buffer.resize(2048);
        keyboard = std::make_unique<Keyboard>(test->desk, KeyboardRequest{"@TextDirection", buffer.data(), maxBytes,
                                                                          flags, [](char* text) { got = text; }});
        keyboard->paint();
    }
    void on(const Device& device, const std::string& language = "en") {
        test = std::make_unique<TestDesk>(device, language);
    }

    void send(int type, const std::string& name) {
        const auto key = keyboard->keyRect(name);
        ASSERT_TRUE(key) << name;
        keyboard->pointer(type, {key->x + key->w / 2, key->y + key->h / 2});
    }
    void tapAt(int x, int y) {
        for (const int type : {kPointerDown, kPointerUp}) keyboard->pointer(type, {x, y});
    }
    /// Taps keys by their names, separated by spaces.
    void tap(const std::string& names) {
        std::istringstream words(names);
        for (std::string name; words >> name;)
            for (const int type : {kPointerDown, kPointerUp}) send(type, name);
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
        const auto callback = keyboard->closed() ? keyboard->takeCallback() : std::nullopt;
        if (!callback) return "no callback";
        callback->run();
        EXPECT_EQ(got, buffer.data());
        return got;
    }

    std::string buffer;
    std::unique_ptr<TestDesk> test = std::make_unique<TestDesk>();
    std::unique_ptr<Keyboard> keyboard;
    static inline char* got = nullptr;
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
    const std::function<void()> ways[] = {[&] { tap("cancel"); }, [&] { press({Key::Escape}); },
                                          [&] { keyboard->cancel(); }};
    for (const auto& cancel : ways) {
        open("before");
        tap("clear x");
        cancel();
        EXPECT_EQ(callBack(), "before");
    }
}

TEST_F(KeyboardTest, NeverWritesBeyondTheLimit) {
    const std::string acutes = "e\u0301e\u0301e\u0301";
    for (const int limit : {0, 1, 2, 3, 4, 5, 6, 8}) {
        open("", limit);
        const auto beyond = static_cast<std::size_t>(limit) + 1;
        buffer[beyond] = '#';
        keyboard->text(acutes);
        EXPECT_EQ(confirm(), acutes.substr(0, static_cast<std::size_t>(limit / 3) * 3));
        EXPECT_EQ(buffer[beyond], '#');
    }
    open("before", 7);
    EXPECT_TRUE(keyboard->type("größer"));
    EXPECT_EQ(callBack(), "größe") << "as a script types";
}

TEST_F(KeyboardTest, ActsOnlyOnAPressThatBeganAndEndedOnOneKey) {
    open("abc");
    test->display.areas.clear();
    for (const char* name : {"ok", "cancel", "clear", "backspace", "q"}) send(kPointerUp, name);
    send(kPointerMove, "w");
    EXPECT_TRUE(test->display.areas.empty());
    send(kPointerDown, "q");
    send(kPointerMove, "w");
    send(kPointerUp, "w");
    send(kPointerDown, "ok");
    keyboard->pointer(kPointerReport, {0, 0});
    send(kPointerUp, "ok");
    EXPECT_EQ(callBack(), "no callback");
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
    open("one two\nthree");
    const Rect field = *keyboard->textPlace();
    const int right = field.x + field.w - 2;
    tapAt(field.x + 2, field.y + 20);
    tap("a");
    tapAt(right, field.y + 20);
    tap("b");
    tapAt(right, field.y + field.h - 2);
    tap("c");
    EXPECT_EQ(confirm(), "aone twob\nthreec");
}

TEST_F(KeyboardTest, TheFieldFollowsTheCursorByWholeLines) {
    const auto firstInSight = [&](const std::string& keys) {
        open("0\n1\n2\n3\n4\n5\n6\n7\n8\n9");
        tap(keys);
        tapAt(keyboard->textPlace()->x + 2, keyboard->textPlace()->y + 20);
        tap("x");
        const std::string text = confirm();
        return text.at(text.find('x') + 1) - '0';
    };
    const int hidden = firstInSight("");
    EXPECT_TRUE(2 < hidden && hidden < 9) << hidden;
    EXPECT_EQ(firstInSight("up up"), hidden) << "those are in sight already";
    EXPECT_EQ(firstInSight("up up up up up up up up"), 1);
    EXPECT_EQ(firstInSight("backspace backspace backspace backspace"), hidden - 2) << "no rows stay empty below";
}

TEST_F(KeyboardTest, LiesAtTheEdgeAskedForWithLargeKeysApart) {
    constexpr int kAtTop = 0x400;
    for (const Device& device : {defaultPanel(), smallGreyPanel(), Device{.width = 800, .height = 600, .dpi = 167}}) {
        for (const char* language : {"en", "ru"}) {
            on(device, language);
            open("", 1023, kAtTop);
            EXPECT_EQ(keyboard->area().y, 0);
            open();
            const Rect area = keyboard->area();
            const int most = device.height * (device.height > device.width ? 45 : 100) / 100;
            EXPECT_TRUE(area.bottom() == device.height && area.w == device.width && area.h <= most);
            std::vector<Rect> boxes;
            for (const char* name : {"q", "shift", "page", "language", "space", "backspace", "return", "left", "down",
                                     "clear", "ok", "cancel", "й", "ъ", "ю"})
                if (const auto box = keyboard->keyRect(name)) boxes.push_back(*box);
            for (const Rect& box : boxes) {
                EXPECT_GE(box.h * 25.4, 8.0 * device.dpi);
                EXPECT_EQ(box.intersected(area), box);
                const auto overlapping = [&box](const Rect& other) { return !box.intersected(other).empty(); };
                EXPECT_EQ(std::ranges::count_if(boxes, overlapping), 1);
            }
        }
    }
}

}  // namespace
}  // namespace host
