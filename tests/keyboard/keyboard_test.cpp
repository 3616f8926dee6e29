#include <gmock/gmock.h>

#include "keyboard/keyboard_fixture.h"

namespace host {
namespace {

TEST_F(KeyboardTest, CancelLeavesTheBufferAndCallsBack) {
    open("before");
    tap({"clear", "x"});
    EXPECT_STREQ(buffer.data(), "before");
    tap({"cancel"});
    EXPECT_EQ(callBack(), "before");
    EXPECT_EQ(entry, "keyboard \"before\"");
}

TEST_F(KeyboardTest, ScriptTypesAndCancels) {
    open("before", 7);
    EXPECT_TRUE(keyboard->type("größer"));
    EXPECT_EQ(callBack(), "größe");
    open("before");
    keyboard->cancel();
    EXPECT_EQ(callBack(), "before");
}

TEST_F(KeyboardTest, NeverWritesBeyondTheLimit) {
    const std::string acutes = "e\u0301e\u0301e\u0301";
    for (const int limit : {0, 1, 2, 3, 4, 5, 6, 8}) {
        open("", limit);
        std::memset(buffer.data() + limit + 1, '#', 16);
        keyboard->text(acutes);
        const auto whole = static_cast<std::size_t>(limit / 3) * 3;
        EXPECT_EQ(confirm(), acutes.substr(0, whole));
        EXPECT_EQ(buffer[static_cast<std::size_t>(limit) + 1], '#');
    }
}

TEST_F(KeyboardTest, PhysicalKeyboardEdits) {
    open("abc");
    keyboard->text("déf");
    for (const Key key : {Key::Left, Key::Backspace, Key::Home, Key::Delete, Key::End, Key::ShiftReturn}) {
        keyboard->key(key);
    }
    keyboard->text("z");
    keyboard->key(Key::Up);
    keyboard->key(Key::Right);
    keyboard->key(Key::Down);
    keyboard->text("!");
    keyboard->key(Key::Return);
    EXPECT_EQ(callBack(), "bcdf\nz!");
    open("abc");
    keyboard->text("x");
    keyboard->key(Key::Escape);
    EXPECT_EQ(callBack(), "abc");
}

TEST_F(KeyboardTest, ATapInTheFieldPlacesTheCursor) {
    open("one two\nthree");
    const Rect field = *keyboard->textPlace();
    tapAt({field.x + 2, field.y + 20});
    tap({"a"});
    tapAt({field.x + field.w - 2, field.y + 20});
    tap({"b"});
    tapAt({field.x + field.w - 2, field.y + field.h - 2});
    tap({"c"});
    EXPECT_EQ(confirm(), "aone twob\nthreec");
}

TEST_F(KeyboardTest, ArrowsFollowTheEyeInArabic) {
    on(defaultPanel(), "ar");
    open("ابج");
    tap({"right", "د"});
    EXPECT_EQ(confirm(), "ابدج");
    open("ابج");
    keyboard->key(Key::Right);
    keyboard->key(Key::Left);
    keyboard->text("د");
    EXPECT_EQ(confirm(), "ابجد");
}

/// Columns of the field that hold ink, inside its frame.
std::pair<int, int> inkSpan(const Screen& screen, Rect field) {
    std::pair<int, int> span{-1, -1};
    const Rect inside{field.x + 8, field.y + 16, field.w - 16, field.h - 32};
    for (int x = inside.x; x < inside.right(); ++x)
        for (int y = inside.y; y < inside.bottom(); ++y)
            if (*screen.pixels().at(x, y) < 0x40) span = {span.first < 0 ? x : span.first, x};
    return span;
}

TEST_F(KeyboardTest, AnEmptyFieldStartsWhereItsLanguageDoes) {
    open();
    const Rect field = *keyboard->textPlace();
    const int centre = field.x + field.w / 2;
    EXPECT_LT(inkSpan(test->screen, field).second, centre);
    on(defaultPanel(), "ar");
    open();
    EXPECT_GT(inkSpan(test->screen, field).first, centre);
    tap({"language"});  // English comes next
    EXPECT_LT(inkSpan(test->screen, field).second, centre);
}

/// A cursor out of sight would move without anything to refresh.
TEST_F(KeyboardTest, TheCursorIsAlwaysInSight) {
    constexpr int kLines = 30;
    std::string lines;
    for (int i = 0; i < kLines; ++i) lines += std::to_string(i) + "\n";
    for (const Device& device : {defaultPanel(), smallGreyPanel()}) {
        on(device);
        open(lines.c_str());
        for (const Key key : {Key::Up, Key::Down, Key::Up}) {
            for (int i = 0; i < kLines; ++i) {
                test->display.areas.clear();
                keyboard->key(key);
                EXPECT_EQ(test->display.areas.size(), 1U) << i;
            }
        }
        keyboard->text("x");
        EXPECT_EQ(confirm(), "x" + lines);
    }
}

TEST_F(KeyboardTest, LiesAtTheEdgeAskedFor) {
    for (const Device& device : {defaultPanel(), smallGreyPanel()}) {
        on(device);
        open();
        EXPECT_EQ(keyboard->area().bottom(), device.height);
        EXPECT_EQ(keyboard->area().w, device.width);
        EXPECT_LE(keyboard->area().h, device.height * 45 / 100);
        open("", kMaxBytes, kAtTop);
        EXPECT_EQ(keyboard->area().y, 0);
        tap({"q"});
        EXPECT_EQ(confirm(), "q");
    }
}

TEST_F(KeyboardTest, KeysAreLargeAndApart) {
    const char* names[] = {"q",    "shift", "page", "language", "space", "backspace", "return", "left",
                           "down", "clear", "ok",   "cancel",   "й",     "ъ",         "ю"};
    const Device landscape{.width = 800, .height = 600, .dpi = 167};
    for (const Device& device : {defaultPanel(), smallGreyPanel(), landscape}) {
        for (const char* language : {"en", "ru"}) {
            on(device, language);
            open();
            std::vector<Rect> boxes;
            for (const char* name : names)
                if (const auto box = keyboard->keyRect(name)) boxes.push_back(*box);
            for (const Rect& box : boxes) {
                EXPECT_GE(box.h * 25.4, 8.0 * device.dpi);
                EXPECT_EQ(box.intersected(keyboard->area()), box);
                const auto overlapping = [&box](const Rect& other) { return !box.intersected(other).empty(); };
                EXPECT_EQ(std::count_if(boxes.begin(), boxes.end(), overlapping), 1);
            }
        }
    }
}

TEST_F(KeyboardTest, WorksOnPanelsOfAnySize) {
    const Device panels[] = {{.width = 100, .height = 100, .dpi = 300},
                             {.width = 300, .height = 90, .dpi = 600, .scale = 3.0},
                             {.width = 2000, .height = 3000, .dpi = 72}};
    for (const Device& device : panels) {
        on(device);
        open("text");
        tapAt({device.width / 3, keyboard->area().y + 5});
        EXPECT_EQ(keyboard->area().intersected(device.bounds()), keyboard->area());
        keyboard->key(Key::Return);
        EXPECT_EQ(callBack(), "text");
    }
}

}  // namespace
}  // namespace host
