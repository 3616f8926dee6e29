#include "colour/color_toolbar.h"

#include <array>

#include "colour/codes.h"
#include "colour/color_button.h"
#include "colour/dp.h"
#include "colour/popup.h"
#include "colour/press.h"
#include "platform/device.h"

using quillo::dp;

namespace {

constexpr int kRows = 2;
constexpr int kColumns = 4;

/// The colours, then the greys of a panel without colour.
constexpr std::array kPalettes = {
    0x000000, 0xFF0000, 0x0000FF, 0x00FF00, 0xFF00FF, 0x00FFFF, 0xFFFF00, 0xFFFFFF,
    0x000000, 0x222222, 0x444444, 0x666666, 0x999999, 0xBBBBBB, 0xDDDDDD, 0xFFFFFF,
};

constexpr int madeEven(int length) { return length + length % 2; }

}  // namespace

void ColorToolbar::Init() {
    if (!buttons_.empty()) return;
    rect_ = iRect(dp(56), dp(71), dp(316), dp(158), 0);
    irect_s swatch = iRect(rect_.x + dp(34.7), rect_.y + dp(23.5), dp(44.8), dp(44.8), 0);
    swatch.w = madeEven(swatch.w);
    swatch.h = madeEven(swatch.h);
    const int gap = dp(22.4);
    const int left = swatch.x;

    const int* color = kPalettes.data() + (device_display_colormask() != 0 ? 0 : kRows * kColumns);
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            buttons_.push_back(
                ColorButton::Create("", "", *color++ + kPaletteColorFlag, swatch, ColorButton::kPaletteEntry));
            swatch.x += gap + swatch.w;
        }
        swatch.x = left;
        swatch.y += gap + swatch.h;
    }
    pointer_image_ = popup::loadPointer();
}

void ColorToolbar::SetColor(int color) {
    for (Button* button : buttons_) {
        auto* swatch = static_cast<ColorButton*>(button);
        swatch->SetSelected(swatch->GetColor() == color);
    }
}

int ColorToolbar::Handler(int type, int x, int y) {
    constexpr press::LogPlace kLog = {"src/colour/color_toolbar", 104, "int ColorToolbar::Handler(int, int, int)"};

    if (type != EventType::PointerUp) return press::follow(buttons_, pressed_, type, x, y);
    return pressed_ != nullptr ? press::release(pressed_, x, y, kLog) : 0;
}

void ColorToolbar::Draw() {
    if (visible_) popup::draw(rect_, buttons_, pointer_image_, rect_.x + dp(27.73));
}
