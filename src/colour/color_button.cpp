#include "colour/color_button.h"

#include "colour/codes.h"
#include "colour/dp.h"

namespace {

struct Dot {
    int radius;
    /// From the button's left and top edge alike, in pixels.
    double offset;
};

Dot placeDot(int type, int width) {
    if (type == ColorButton::kPaletteEntry) {
        const int radius = quillo::dp(18);
        return {radius, (width - 2 * radius) / 2.0};
    }
    if (type == ColorButton::kCurrentColor) {
        // Left of the centre, which leaves room for the arrow.
        const int radius = quillo::dp(15);
        return {radius, (width - 2 * radius) / 5.0 * 2.0};
    }
    return {1, (width - 2) / 2.0};
}

}  // namespace

ColorButton* ColorButton::Create(const std::string& name, const std::string& second_name, int command, irect_s rect,
                                 int type) {
    SmartBitmap image(name, false);
    SmartBitmap second_image(second_name, false);
    auto* button = new ColorButton;
    button->SetPosition(rect);
    button->SetCommand(command);
    button->SetImages(image, second_image);
    button->SetType(type);
    if (type == kPaletteEntry) button->SetColor(command & kColorMask);
    if (type == kCurrentColor) button->SetColor(kBlack);
    return button;
}

int ColorButton::Handler(int type, int x, int y) {
    const int result = Button::Handler(type, x, y);
    if (type == EventType::PointerUp && result != 0) wrapped_ = !wrapped_;
    return result;
}

void ColorButton::Draw() {
    const SmartBitmap& image = wrapped_ ? image_ : focused_image_;
    if (image.isEmpty()) {
        FillAreaRect(&rect_, kWhite);
    } else {
        drawCentred(image);
    }
    if (color_ == kNoColor) return;
    drawDot();
    if (type_ == kPaletteEntry && selected_) {
        DrawFrameRectCertifiedEx(rect_, kThinLine, kAllSides, kAllCorners, rect_.w / 2, kBlack, kWhite);
    }
}

void ColorButton::drawDot() const {
    const auto [radius, offset] = placeDot(type_, rect_.w);
    const int left = static_cast<int>(rect_.x + offset);
    const int top = static_cast<int>(rect_.y + offset);
    const int side = 2 * radius;
    DrawFrameCertifiedEx(left, top, side, side, radius, kAllSides, kFilledCorners, radius, color_, kWhite);
    if (color_ == kWhite) {
        DrawFrameCertifiedEx(left, top, side, side, 1, kAllSides, kAllCorners, radius, kBlack, kWhite);
    }
}
