#include "colour/color_button.h"

#include "colour/codes.h"
#include "colour/dp.h"

namespace {

/// Pixels.
int dotRadius(int type) {
    if (type == ColorButton::kPaletteEntry) return quillo::dp(18);
    return type == ColorButton::kCurrentColor ? quillo::dp(15) : 1;
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): a button is made once; the signature is fixed.
ColorButton* ColorButton::Create(std::string name, std::string second_name, int command, irect_s rect, int type) {
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
    const int radius = dotRadius(type_);
    const int side = 2 * radius;
    // Centred, but left of the centre where the arrow needs room; as far from the top as from the left.
    const double offset = type_ == kCurrentColor ? (rect_.w - side) / 5.0 * 2.0 : (rect_.w - side) / 2.0;
    const int left = static_cast<int>(rect_.x + offset);
    const int top = static_cast<int>(rect_.y + offset);
    DrawFrameCertifiedEx(left, top, side, side, radius, kAllSides, kAllCorners | kFilled, radius, color_, kWhite);
    if (color_ == kWhite) {
        DrawFrameCertifiedEx(left, top, side, side, 1, kAllSides, kAllCorners, radius, kBlack, kWhite);
    }
}
