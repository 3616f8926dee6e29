#include "colour/popup.h"

#include "colour/codes.h"
#include "platform/graphics.h"

namespace popup {

SmartBitmap loadPointer() {
    constexpr int kQuarterTurn = 1;
    SmartBitmap pointer = themePicture("context_menu_pointer");
    LumoraGraphics::RotateBitmap(&pointer, kQuarterTurn);
    return pointer;
}

void draw(const irect_s& rect, const std::vector<Button*>& buttons, const SmartBitmap& pointer, int pointer_x) {
    FillAreaRect(&rect, kWhite);
    for (Button* button : buttons) button->Draw();
    const int thickness = GetDefaultFrameCertifiedThickness(kThickLine);
    DrawFrameRectCertifiedEx(rect, thickness, kAllSides, kAllCorners, kStandardCorner, kBlack, kWhite);
    if (pointer.isEmpty()) return;
    // The arrow's foot covers the frame's line, so panel and arrow are one shape.
    DrawBitmap(pointer_x, rect.y + thickness - pointer.height(), pointer.GetBitmap());
}

}  // namespace popup
