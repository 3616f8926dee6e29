#include "platform/smart_bitmap.h"

#include "platform/graphics.h"
#include "platform/host/toolkit.h"

namespace lumora::utilities {

SmartBitmap::SmartBitmap(const std::string& name, bool cached) {
    if (name.empty()) return;
    host::Toolkit& kit = host::toolkit();
    bitmap_ = kit.theme.picture(name);
    kit.trace.answered("SmartBitmap", GetBitmap(), name, cached ? 1 : 0);
}

void SmartBitmap::LoadFromTheme(const std::string& name, const SmartBitmap& fallback) {
    host::Toolkit& kit = host::toolkit();
    bitmap_ = kit.theme.picture(name);
    if (bitmap_ == nullptr) bitmap_ = fallback.bitmap_;
    kit.trace.answered("LoadFromTheme", GetBitmap(), name);
}

void SmartBitmap::FromScreen(int x, int y, int w, int h) {
    host::Toolkit& kit = host::toolkit();
    bitmap_ = std::shared_ptr<bitmap_s>(kit.screen.capture({x, y, w, h}));
    kit.trace.answered("FromScreen", GetBitmap(), x, y, w, h);
    kit.keeper.captured({x, y, w, h}, bitmap_);
}

}  // namespace lumora::utilities

namespace LumoraGraphics {

void RotateBitmap(SmartBitmap* bitmap, int code) {
    host::toolkit().trace.call("RotateBitmap", code);
    if (bitmap == nullptr || bitmap->isEmpty()) return;
    *bitmap = SmartBitmap(std::shared_ptr<bitmap_s>(host::rotateBitmap(*bitmap->GetBitmap(), code)));
}

}  // namespace LumoraGraphics
