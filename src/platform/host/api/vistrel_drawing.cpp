// Drawing, pictures and text of the toolkit's API.

#include <algorithm>
#include <cstdio>

#include "platform/host/toolkit.h"
#include "platform/vistrel.h"

using host::Toolkit;
using host::toolkit;
using host::TraceColour;

void ClearScreen() {
    toolkit().trace.call("ClearScreen");
    toolkit().screen.clear();
}

void FillArea(int x, int y, int w, int h, int colour) {
    toolkit().trace.call("FillArea", x, y, w, h, TraceColour{colour});
    toolkit().screen.fill({x, y, w, h}, colour);
}

void FillAreaRect(const irect_s* rect, int colour) {
    toolkit().trace.call("FillAreaRect", rect->x, rect->y, rect->w, rect->h, TraceColour{colour});
    toolkit().screen.fill({rect->x, rect->y, rect->w, rect->h}, colour);
}

void DrawLine(int x1, int y1, int x2, int y2, int colour) {
    toolkit().trace.call("DrawLine", x1, y1, x2, y2, TraceColour{colour});
    toolkit().screen.line({x1, y1}, {x2, y2}, colour);
}

void DrawPixel(int x, int y, int colour) {
    toolkit().trace.call("DrawPixel", x, y, TraceColour{colour});
    toolkit().screen.pixel({x, y}, colour);
}

void DrawBitmap(int x, int y, const bitmap_s* bitmap) {
    toolkit().trace.call("DrawBitmap", x, y, bitmap);
    if (bitmap == nullptr) return;
    toolkit().screen.draw({x, y}, *bitmap);
    toolkit().keeper.drawn(bitmap);
}

namespace {

host::Frame resolvedFrame(host::Rect box, int thickness, int sides, int corners, int radius, int colour) {
    const host::Device& device = toolkit().options.device;
    return {box, device.frameThickness(thickness), sides, corners, device.cornerRadius(radius), colour};
}

}  // namespace

void DrawFrameCertifiedEx(int x, int y, int w, int h, int thickness, int sides, int corners, int radius, int colour,
                          int background) {
    toolkit().trace.call("DrawFrameCertifiedEx", x, y, w, h, thickness, sides, corners, radius, TraceColour{colour},
                         TraceColour{background});
    toolkit().screen.frame(resolvedFrame({x, y, w, h}, thickness, sides, corners, radius, colour));
}

void DrawFrameRectCertifiedEx(irect_s rect, int thickness, int sides, int corners, int radius, int colour,
                              int background) {
    toolkit().trace.call("DrawFrameRectCertifiedEx", rect.x, rect.y, rect.w, rect.h, thickness, sides, corners, radius,
                         TraceColour{colour}, TraceColour{background});
    toolkit().screen.frame(resolvedFrame({rect.x, rect.y, rect.w, rect.h}, thickness, sides, corners, radius, colour));
}

int GetDefaultFrameCertifiedThickness(int code) {
    const int pixels = toolkit().options.device.frameThickness(code);
    toolkit().trace.question("GetDefaultFrameCertifiedThickness", pixels, code);
    return pixels;
}

font_s* OpenFont(const char* name, int size, int style) {
    Toolkit& kit = toolkit();
    kit.trace.call("OpenFont", name, size, style);
    std::unique_ptr<font_s> font = kit.text.open(name, size);
    if (font == nullptr) return nullptr;
    return kit.textSetting.open.emplace_back(std::move(font)).get();
}

void CloseFont(font_s* font) {
    Toolkit& kit = toolkit();
    kit.trace.call("CloseFont");
    if (kit.textSetting.font == font) kit.textSetting.font = nullptr;
    std::erase_if(kit.textSetting.open, [font](const auto& held) { return held.get() == font; });
}

void SetFont(font_s* font, int colour) {
    toolkit().trace.call("SetFont", TraceColour{colour});
    toolkit().textSetting.font = font;
    toolkit().textSetting.colour = colour;
}

const char* vistrel_get_default_font(int index) {
    const char* name = toolkit().text.defaultFamily(index);
    toolkit().trace.question("vistrel_get_default_font", name, index);
    return name;
}

void DrawTextRect2(const irect_s* rect, const char* text) {
    Toolkit& kit = toolkit();
    kit.trace.call("DrawTextRect2", rect->x, rect->y, rect->w, rect->h, rect->flags, text);
    host::TextSetting& setting = kit.textSetting;
    if (setting.font == nullptr && setting.standard == nullptr) {
        constexpr int kStandardSize = 28;
        setting.standard = kit.text.open(nullptr, kStandardSize);
    }
    const font_s& font = setting.font != nullptr ? *setting.font : *setting.standard;
    const host::Rect box{rect->x, rect->y, rect->w, rect->h};
    kit.text.draw(kit.screen, box, text, font, {.colour = setting.colour});
    kit.keeper.drawn({box, text, font, setting.colour});
}

bitmap_s* LoadBitmap(const char* path) {
    Toolkit& kit = toolkit();
    std::string error;
    host::BitmapPtr picture = kit.keeper.load(path, error);
    kit.trace.answered("LoadBitmap", picture.get(), path);
    // A new picture has no file yet; that is no fault to tell.
    if (picture == nullptr && kit.storage.access(path, 0) == 0) std::fprintf(stderr, "colour: %s\n", error.c_str());
    return picture.release();
}

int SaveBitmap(const char* path, const bitmap_s* bitmap) {
    Toolkit& kit = toolkit();
    kit.trace.call("SaveBitmap", path, bitmap);
    return kit.keeper.save(path, bitmap);
}

bitmap_s* BitmapFromScreen(int x, int y, int w, int h) {
    host::BitmapPtr capture = toolkit().screen.capture({x, y, w, h});
    toolkit().trace.answered("BitmapFromScreen", capture.get(), x, y, w, h);
    if (capture == nullptr) toolkit().keeper.notSaved();
    return capture.release();
}
