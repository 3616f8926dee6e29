#include "colour/toolbar.h"

#include <array>
#include <string>
#include <utility>

#include "colour/codes.h"
#include "colour/dp.h"
#include "colour/press.h"
#include "platform/device.h"

using quillo::dp;

namespace {

/// What stands to the right of a button.
enum class Follow { Gap, GapWithSeparator, Nothing };

struct Entry {
    const char* name;
    const char* second_name;
    int command;
    Follow follow;
};

// Left to right. Undo and redo touch.
constexpr std::array kEntries = {
    Entry{"back", "back_inv", Command::Back, Follow::GapWithSeparator},
    Entry{"choose_color_arrow_down", "choose_color_arrow_up", Command::Palette, Follow::Gap},
    Entry{"pen_thickness_3_arrow", "pen_thickness_3_arrow", Command::Pen3, Follow::Gap},
    Entry{"eraser", "eraser", Command::Eraser, Follow::Gap},
    Entry{"quillo_text_tool", "quillo_text_tool", Command::Text, Follow::Gap},
    Entry{"quillo_font_tool", "quillo_font_tool", Command::Font, Follow::GapWithSeparator},
    Entry{"pen_undo", "pen_undo_inv", Command::Undo, Follow::Nothing},
    Entry{"pen_redo", "pen_redo_inv", Command::Redo, Follow::GapWithSeparator},
    Entry{"trash", "ps_trash_inv", Command::Delete, Follow::Gap},
};

Button* createButton(const Entry& entry, const irect_s& place) {
    if (entry.command != Command::Palette) {
        return Button::Create(entry.name, entry.second_name, entry.command, place);
    }
    return ColorButton::Create(entry.name, entry.second_name, entry.command, place, ColorButton::kCurrentColor);
}

/// The pen button's pictures for its thickness. `focused_ending` names the one shown while it is focused.
void showThickness(Button& pen, const std::string& focused_ending) {
    const std::string name = "pen_thickness_" + std::to_string(pen.GetCommand() - kPenCommandBase) + "_arrow";
    SmartBitmap image(name, false);
    SmartBitmap focused_image(name + focused_ending, false);
    pen.SetImages(image, focused_image);
}

}  // namespace

void Toolbar::Init() {
    if (!buttons_.empty()) return;
    rule_y_ = dp(55.5);
    separator_length_ = dp(34.1);
    marker_height_ = dp(4.3);
    marker_width_ = dp(68.3);
    rect_ = iRect(0, 0, ScreenWidth(), rule_y_ + marker_height_ / 2 + marker_height_ % 2, 0);
    layOutButtons();
    SetColor(device_display_colormask() != 0 ? kRed : kBlack);
}

void Toolbar::layOutButtons() {
    constexpr int kButtons = static_cast<int>(kEntries.size());
    constexpr double kGaps = 7.0;

    irect_s place = iRect(dp(6.4), dp(2.67), dp(50.1), dp(50.1), 0);
    const double gap = ((rect_.w - 2 * place.x) - kButtons * place.w) / kGaps;
    for (const Entry& entry : kEntries) {
        buttons_.push_back(createButton(entry, place));
        if (entry.follow == Follow::GapWithSeparator) {
            separators_.push_back(static_cast<int>(gap * 0.5 + (place.x + place.w)));
        }
        place.x = entry.follow == Follow::Nothing ? place.x + place.w : static_cast<int>((gap + place.w) + place.x);
    }
}

Button* Toolbar::buttonOf(int command) const {
    for (Button* button : buttons_) {
        const int own = button->GetCommand();
        if (own == command || (isPen(own) && isPen(command))) return button;
    }
    return nullptr;
}

ColorButton* Toolbar::colorButton() const { return dynamic_cast<ColorButton*>(buttonOf(Command::Palette)); }

void Toolbar::SetTool(int tool) {
    if (Button* button = buttonOf(tool)) tool_button_ = button;
}

int Toolbar::GetColor() const {
    const ColorButton* button = colorButton();
    return button != nullptr ? button->GetColor() : kBlack;
}

void Toolbar::SetColor(int color) {
    ColorButton* button = colorButton();
    if (button == nullptr) return;
    button->SetColor(color);
    button->SetWrapped(true);
}

int Toolbar::GetPenThickness() const {
    const Button* pen = buttonOf(Command::Pen1);
    return pen != nullptr ? pen->GetCommand() - kPenCommandBase : 0;
}

void Toolbar::SetPenThickness(int thickness) {
    Button* pen = buttonOf(Command::Pen1);
    if (pen == nullptr) return;
    pen->SetCommand(kPenCommandBase + thickness);
    showThickness(*pen, "");
    pen->SetFocusedForce(false);
}

int Toolbar::Handler(int type, int x, int y) {
    if (type != EventType::PointerUp) return press::follow(buttons_, pressed_, type, x, y);
    return pressed_ != nullptr ? release(x, y) : 0;
}

int Toolbar::release(int x, int y) {
    constexpr press::LogPlace kLog = {"src/colour/toolbar", 174, "int Toolbar::Handler(int, int, int)"};

    Button& button = *std::exchange(pressed_, nullptr);
    const int command = button.GetCommand();
    const bool inside = button.Handler(EventType::PointerUp, x, y) != 0;
    const bool opens_popup = inside && tool_button_ != nullptr && isPen(tool_button_->GetCommand()) && isPen(command);
    if (opens_popup) button.SetFocusedForce(true);
    button.Draw();
    if (inside) press::log(kLog, command);
    if (opens_popup) {
        // Inverted while the thickness popup is open; SetPenThickness puts it back.
        showThickness(button, "_inv");
        button.Draw();
    } else if (inside && isTool(command)) {
        tool_button_ = &button;
        Draw();
        press::refresh(rect_);
        return command;
    }
    press::refresh(button.GetRect());
    return inside ? command : 1;
}

void Toolbar::Draw() {
    FillAreaRect(&rect_, kWhite);
    for (Button* button : buttons_) button->Draw();
    for (const int x : separators_) {
        DrawLine(x, (rule_y_ - separator_length_) / 2, x, (rule_y_ + separator_length_) / 2, kBlack);
    }
    DrawLine(0, rule_y_, ScreenWidth(), rule_y_, kBlack);
    if (tool_button_ != nullptr) drawMarker();
}

void Toolbar::drawMarker() const {
    irect_s bar = tool_button_->GetRect();
    bar.x += (bar.w - marker_width_) / 2;
    bar.y = rule_y_ - marker_height_ / 2;
    bar.w = marker_width_;
    bar.h = marker_height_;
    // A line as thick as the bar is high fills it; the radius gives it round ends.
    DrawFrameRectCertifiedEx(bar, marker_height_, kAllSides, kAllCorners | kFilled, marker_height_ / 2, kBlack, kWhite);
}
