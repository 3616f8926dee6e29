#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>

#include "platform/host/desk/keyboard.h"
#include "platform/host/desk/pointer_event.h"
#include "support/test_desk.h"

namespace host {

/// A keyboard over its screen and a hand that taps its keys.
class KeyboardTest : public testing::Test {
protected:
    static constexpr int kAtTop = 0x400;
    static constexpr int kMaxBytes = 1023;

    void open(const char* text = "", int maxBytes = kMaxBytes, int flags = 0) {
        std::strncpy(buffer.data(), text, buffer.size() - 1);
        calledBack = nullptr;
        keyboard = std::make_unique<Keyboard>(
            test->desk, KeyboardRequest{"@TextDirection", buffer.data(), maxBytes, flags, remember});
        keyboard->paint();
        test->display.areas.clear();
    }

    void on(const Device& device, const std::string& language = "en") {
        test = std::make_unique<TestDesk>(device, language);
    }

    [[nodiscard]] Rect key(const char* name) const {
        const auto rect = keyboard->keyRect(name);
        EXPECT_TRUE(rect.has_value()) << name;
        return rect.value_or(Rect{});
    }
    static Point middle(Rect rect) { return {rect.x + rect.w / 2, rect.y + rect.h / 2}; }

    void send(int type, Point at) { keyboard->pointer(type, at); }
    void tapAt(Point at) {
        send(kPointerDown, at);
        send(kPointerUp, at);
    }
    void tap(std::initializer_list<const char*> names) {
        for (const char* name : names) tapAt(middle(key(name)));
    }

    /// Presses OK and returns what the application gets.
    std::string confirm() {
        tap({"ok"});
        return callBack();
    }
    std::string callBack() {
        EXPECT_TRUE(keyboard->closed());
        const auto callback = keyboard->takeCallback();
        if (!callback) return "no callback";
        entry = callback->entry;
        callback->run();
        return calledBack == nullptr ? "not called" : calledBack;
    }

    std::array<char, 2048> buffer{};
    std::unique_ptr<TestDesk> test = std::make_unique<TestDesk>();
    std::unique_ptr<Keyboard> keyboard;
    std::string entry;

    static inline char* calledBack = nullptr;

private:
    static void remember(char* text) { calledBack = text; }
};

}  // namespace host
