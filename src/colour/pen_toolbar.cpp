#include "colour/pen_toolbar.h"

#include <string>

#include "colour/codes.h"
#include "colour/dp.h"
#include "colour/popup.h"
#include "colour/press.h"

using quillo::dp;

void PenToolbar::Init() {
    constexpr int kThicknesses = 5;

    if (!buttons_.empty()) return;
    rect_ = iRect(dp(56), dp(71), dp(379), dp(77), 0);
    irect_s place = iRect(rect_.x + dp(21.33), rect_.y + dp(13.33), dp(50.13), dp(50.13), 0);
    for (int thickness = 1; thickness <= kThicknesses; ++thickness) {
        const std::string name = "pen_thickness_" + std::to_string(thickness);
        buttons_.push_back(Button::Create(name, name + "_inv", kPenCommandBase + thickness, place));
        place.x += dp(21.33) + place.w;
    }
    pointer_image_ = popup::loadPointer();
}

void PenToolbar::SetThickness(int thickness) {
    int position = 1;
    for (Button* button : buttons_) button->SetFocusedForce(position++ == thickness);
}

int PenToolbar::Handler(int type, int x, int y) {
    constexpr press::LogPlace kLog = {"src/colour/pen_toolbar", 91, "int PenToolbar::Handler(int, int, int)"};

    if (type != EventType::PointerUp) return press::follow(buttons_, pressed_, type, x, y);
    if (pressed_ == nullptr) return 0;
    // A slow panel must show the pressed look before the release takes it away.
    WaitForUpdateComplete();
    return press::release(pressed_, x, y, kLog);
}

void PenToolbar::Draw() {
    if (visible_) popup::draw(rect_, buttons_, pointer_image_, rect_.x + dp(100));
}
