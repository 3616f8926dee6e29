#pragma once

#include <vector>

#include "colour/button.h"

/// What the palette and the thickness popup have in common: a framed white panel below the toolbar with a pointer
/// arrow on its top edge.
namespace popup {

/// The arrow from the theme, turned so that it points up.
SmartBitmap loadPointer();

/// Paints panel, buttons, frame and arrow. `pointer_x` is the arrow's left edge on the screen.
void draw(const irect_s& rect, const std::vector<Button*>& buttons, const SmartBitmap& pointer, int pointer_x);

}  // namespace popup
