#include "platform/vistrel.h"

#include <algorithm>

#include "platform/host/dialogs/font_selector.h"
#include "platform/host/dialogs/message_dialog.h"
#include "platform/host/keyboard/keyboard.h"
#include "platform/host/toolkit.h"

using host::Toolkit;
using host::toolkit;
using host::Waveform;

namespace {

host::Instant dueIn(int milliseconds) {
    return toolkit().loop.timersCountFrom() + host::Milliseconds(std::max(milliseconds, 0));
}

}  // namespace

// The toolkit itself is made when the explorer has read the command line; nothing asks for the screen before that.
void InitVistrel(const char* /*reserved*/) { host::openStandardStreams(); }

event_handler_t SetEventHandler(event_handler_t handler) {
    toolkit().trace.call("SetEventHandler");
    return toolkit().loop.setHandler(handler);
}

// This device has no status bar to hide.
void SetPanelType(int type) { toolkit().trace.call("SetPanelType", type); }

int ScreenWidth() { return toolkit().options.device.width; }
int ScreenHeight() { return toolkit().options.device.height; }

int design_to_pixel(int units) {
    const int pixels = toolkit().options.device.designToPixel(units);
    toolkit().trace.question("design_to_pixel", pixels, units);
    return pixels;
}

irect_s iRect(int x, int y, int w, int h, int flags) { return {x, y, w, h, flags}; }

void FullUpdate() {
    toolkit().trace.call("FullUpdate");
    toolkit().panel.update(toolkit().options.device.bounds(), Waveform::Full);
}

void PartialUpdate(int x, int y, int w, int h) {
    toolkit().trace.call("PartialUpdate", x, y, w, h);
    toolkit().keeper.shown();
    toolkit().panel.update({x, y, w, h}, Waveform::Regular);
}

void SoftUpdateHQ() {
    toolkit().trace.call("SoftUpdateHQ");
    toolkit().panel.update(toolkit().options.device.bounds(), Waveform::Regular);
}

void DynamicUpdateBW(int x, int y, int w, int h) {
    toolkit().trace.call("DynamicUpdateBW", x, y, w, h);
    toolkit().panel.update({x, y, w, h}, Waveform::Fast);
}

void WaitForUpdateComplete() {
    toolkit().trace.call("WaitForUpdateComplete");
    toolkit().panel.wait();
}

void SetHardTimer(const char* name, timer_callback_t callback, int milliseconds) {
    toolkit().trace.call("SetHardTimer", name, milliseconds);
    toolkit().loop.timers().set(name, callback, dueIn(milliseconds));
}

void SetHardTimerEx(const char* name, timer_context_callback_t callback, void* context, int milliseconds) {
    toolkit().trace.call("SetHardTimerEx", name, milliseconds);
    toolkit().loop.timers().set(name, callback, context, dueIn(milliseconds));
}

void ClearTimerEx(timer_context_callback_t callback, void* context) {
    toolkit().trace.call("ClearTimerEx");
    toolkit().loop.timers().clear(callback, context);
}

void Dialog(int kind, const char* title, const char* text, const char* button1, const char* button2,
            dialog_callback_t callback) {
    Toolkit& kit = toolkit();
    kit.trace.call("Dialog", kind, title, text, button1, button2);
    kit.modals.open(host::makeMessageDialog(kit.desk, {title, text, button1, button2}, callback));
}

void OpenKeyboard(const char* title, char* buffer, int max_bytes, int flags, keyboard_callback_t callback) {
    Toolkit& kit = toolkit();
    kit.trace.call("OpenKeyboard", title, buffer, max_bytes, flags);
    kit.modals.open(host::makeKeyboard(kit.desk, {title, buffer, max_bytes, flags, callback}));
}

void OpenFontSelector(const char* title, const char* font, int with_size, font_callback_t callback) {
    Toolkit& kit = toolkit();
    kit.trace.call("OpenFontSelector", title, font, with_size);
    kit.modals.open(host::makeFontSelector(kit.desk, {title, font, with_size != 0, callback}));
}

const char* GetThemeString(const char* name, const char* fallback) {
    const std::string* value = toolkit().theme.value(name);
    const char* result = value != nullptr ? value->c_str() : fallback;
    toolkit().trace.question("GetThemeString", result, name, fallback);
    return result;
}

int GetThemeInt(const char* name, int fallback) {
    const int result = toolkit().theme.number(name, fallback);
    toolkit().trace.question("GetThemeInt", result, name, fallback);
    return result;
}

const char* GetLangText(const char* key) {
    const char* text = toolkit().languages.text(key).c_str();
    toolkit().trace.question("GetLangText", text, key);
    return text;
}

int vistrel_unlink(const char* path) {
    toolkit().trace.call("vistrel_unlink", path);
    return toolkit().keeper.remove(path, host::Removal::Ordered);
}
