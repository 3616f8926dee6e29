#pragma once

#include "platform/smart_bitmap.h"

namespace LumoraGraphics {

/// Turns the picture in place by `code` quarter turns clockwise (1 to 3; any other code leaves it). The
/// handle gets pixels of its own, so other copies keep the picture as it was.
void RotateBitmap(SmartBitmap* bitmap, int code);

}  // namespace LumoraGraphics
