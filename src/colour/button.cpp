#include "colour/button.h"

#include "colour/codes.h"

SmartBitmap themePicture(const std::string& name) {
    const SmartBitmap fallback("broken_image", false);
    SmartBitmap picture;
    picture.LoadFromTheme(name, fallback);
    return picture;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a button is made once; the signature is fixed.
Button* Button::Create(std::string name, std::string focused_name, int command, irect_s rect) {
    SmartBitmap image = themePicture(name);
    SmartBitmap focused_image = themePicture(focused_name);
    auto* button = new Button;
    button->SetPosition(rect);
    button->SetCommand(command);
    button->SetImages(image, focused_image);
    return button;
}

void Button::SetImages(SmartBitmap& image, SmartBitmap& focused_image) {
    image_ = image;
    focused_image_ = focused_image;
}

int Button::Handler(int type, int x, int y) {
    if (type == EventType::PointerDown) {
        focused_ = contains(x, y);
        return focused_ ? 1 : 0;
    }
    if (!focused_) return 0;
    if (type == EventType::PointerMove) {
        focused_ = contains(x, y);
        return focused_ ? 0 : 1;
    }
    if (type == EventType::PointerUp) {
        focused_ = false;
        return contains(x, y) ? 1 : 0;
    }
    return 0;
}

void Button::Draw() {
    const SmartBitmap& image = focused_ ? focused_image_ : image_;
    if (image.isEmpty()) return;
    FillAreaRect(&rect_, kWhite);
    drawCentred(image);
}

bool Button::contains(int x, int y) const {
    return x >= rect_.x && x <= rect_.x + rect_.w && y >= rect_.y && y <= rect_.y + rect_.h;
}

void Button::drawCentred(const SmartBitmap& image) const {
    DrawBitmap(rect_.x + (rect_.w - image.width()) / 2, rect_.y + (rect_.h - image.height()) / 2, image.GetBitmap());
}
