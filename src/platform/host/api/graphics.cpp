#include "platform/graphics.h"

#include "platform/host/toolkit.h"

namespace LumoraGraphics {

void RotateBitmap(SmartBitmap* bitmap, int code) {
    host::toolkit().trace.call("RotateBitmap", code);
    if (bitmap == nullptr || bitmap->isEmpty()) return;
    *bitmap = SmartBitmap(std::shared_ptr<bitmap_s>(host::rotateBitmap(*bitmap->GetBitmap(), code)));
}

}  // namespace LumoraGraphics
