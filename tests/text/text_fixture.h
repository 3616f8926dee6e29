#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/host/screen/text.h"

namespace host {

/// A grey 600 × 400 screen with the default font in 24 units (25 pixels at 167 dpi).
class TextTest : public testing::Test {
protected:
    static Device device() { return {600, 400, 167, 1.0, false, 0}; }

    Screen drawn(Rect box, std::string_view utf8, const TextStyle& style = {}) {
        return drawnIn(*font_, box, utf8, style);
    }
    Screen drawnIn(const font_s& font, Rect box, std::string_view utf8, const TextStyle& style = {}) {
        Screen screen(device_.bounds().size(), PixelFormat::Grey8);
        text_.draw(screen, box, utf8, font, style);
        return screen;
    }

    /// The smallest rectangle around all that is not white.
    static Rect ink(const Screen& screen) {
        Rect inked;
        const Framebuffer& pixels = screen.pixels();
        for (int y = 0; y < pixels.size().h; ++y) {
            for (int x = 0; x < pixels.size().w; ++x) {
                if (*pixels.at(x, y) != 0xFF) inked = inked.united({x, y, 1, 1});
            }
        }
        return inked;
    }

    static bool inside(Rect inner, Rect outer) { return inner.empty() || inner.intersected(outer) == inner; }

    Device device_ = device();
    Text text_{device_};
    std::unique_ptr<font_s> font_ = text_.open(nullptr, 24);
};

}  // namespace host
