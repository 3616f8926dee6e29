#include "colour/press.h"

#include "colour/codes.h"
#include "platform/device.h"
#include "platform/log.h"

namespace press {

namespace {

int down(const std::vector<Button*>& buttons, Button*& pressed, int x, int y) {
    for (Button* button : buttons) {
        const int result = button->Handler(EventType::PointerDown, x, y);
        if (result == 0) continue;
        pressed = button;
        repaint(*button);
        return result;
    }
    return 0;
}

int move(Button*& pressed, int x, int y) {
    if (pressed == nullptr) return 0;
    if (pressed->Handler(EventType::PointerMove, x, y) == 0) return 1;
    repaint(*pressed);
    pressed = nullptr;
    return 1;
}

}  // namespace

void repaint(Button& button) {
    button.Draw();
    refresh(button.GetRect());
}

void refresh(const irect_s& rect) { PartialUpdate(rect.x, rect.y, rect.w, rect.h); }

int follow(const std::vector<Button*>& buttons, Button*& pressed, int type, int x, int y) {
    if (type == EventType::PointerDown) return down(buttons, pressed, x, y);
    return type == EventType::PointerMove ? move(pressed, x, y) : 0;
}

int release(Button*& pressed, int x, int y, const LogPlace& place) {
    const bool clicked = pressed->Handler(EventType::PointerUp, x, y) != 0;
    pressed->Draw();
    if (clicked) log(place, pressed->GetCommand());
    refresh(pressed->GetRect());
    const int result = clicked ? pressed->GetCommand() : 1;
    pressed = nullptr;
    return result;
}

void log(const LogPlace& place, int command) {
    constexpr int kLogLevel = 4;
    lumora_print_log2(kLogLevel, place.file, place.line, place.function, "[pid:%d]Set tool [%d]", g_process_pid,
                      command);
}

}  // namespace press
