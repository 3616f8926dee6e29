#include "colour/controller.h"

#include "colour/codes.h"
#include "colour/dp.h"
#include "platform/device.h"
#include "platform/log.h"

namespace lumora::colour {

namespace {

Controller* instance_ = nullptr;
bool initialized_ = false;

bool isRouted(int type) {
    // 34, 35, 39, 44, 45 and 46, counted from 34.
    constexpr unsigned kOthers = 0x1C23;
    constexpr int kFirst = EventType::Routed34;
    constexpr int kLast = EventType::Routed46;
    if (type == EventType::PointerUp || type == EventType::PointerDown || type == EventType::PointerMove) return true;
    return type >= kFirst && type <= kLast && (kOthers >> (type - kFirst) & 1U) != 0;
}

/// The line a pen of that thickness draws, in pixels.
int lineWidth(int thickness) { return 2 * quillo::dp(thickness); }

void refreshScreen() { PartialUpdate(0, 0, ScreenWidth(), ScreenHeight()); }

constexpr int kLogLevel = 4;
constexpr const char* kLogFile = "src/colour/controller";
constexpr const char* kLogFunction = "int lumora::colour::Controller::Handler(int, int, int)";

}  // namespace

Controller* Controller::Instance() {
    if (instance_ == nullptr) instance_ = new Controller;
    return instance_;
}

int Controller::staticHandler(int type, int par1, int par2) { return Instance()->Handler(type, par1, par2); }

void Controller::staticRemoveHandler(int button) { Instance()->removeHandler(button); }

void Controller::open(const std::string& path) {
    showScreen();
    canvas_.LoadImage(path, false);
    takeOver();
}

void Controller::create() {
    showScreen();
    canvas_.LoadImage("/mnt/ext1/My pictures/picture_" + std::to_string(device::time()) + ".bmp", true);
    takeOver();
}

void Controller::showScreen() {
    SetPanelType(0);
    ClearScreen();
    Init();
}

// The picture reaches the panel with the repaint event that follows.
void Controller::takeOver() { previous_handler_ = SetEventHandler(staticHandler); }

void Controller::Init() {
    constexpr int kFirstTool = Command::Pen3;

    if (initialized_) return;
    initialized_ = true;
    toolbar_.Init();
    toolbar_.SetTool(kFirstTool);
    const int top = toolbar_.GetRect().h;
    canvas_.toolbar_ = &toolbar_;
    canvas_.SetPosition(iRect(0, top, ScreenWidth(), ScreenHeight() - top, 0));
    canvas_.SetTool(kFirstTool);
    canvas_.SetPenThickness(lineWidth(kFirstTool - kPenCommandBase));
    canvas_.SetPenColor(toolbar_.GetColor());
    canvas_.LoadImage("", true);
    ClearScreen();
    toolbar_.Draw();
    FullUpdate();
    color_toolbar_.Init();
    pen_toolbar_.Init();
}

int Controller::Handler(int type, int par1, int par2) {
    if (type == EventType::Redraw || type == EventType::RedrawAlt) {
        // An open popup is painted over but stays open.
        repaint();
        FullUpdate();
        return 1;
    }
    if (type == EventType::Claim) return 1;
    if (!isRouted(type)) return 0;
    if (color_toolbar_.visible_) return paletteHandler(type, par1, par2);
    if (pen_toolbar_.visible_) return thicknessHandler(type, par1, par2);

    const int result = toolbar_.Handler(type, par1, par2);
    if (result == 0) return canvas_.Handler(type, par1, par2);
    return type == EventType::PointerUp ? command(result) : result;
}

void Controller::repaint() {
    canvas_.Draw();
    toolbar_.Draw();
}

int Controller::paletteHandler(int type, int par1, int par2) {
    const int result = color_toolbar_.Handler(type, par1, par2);
    if (type != EventType::PointerUp) return result;
    color_toolbar_.SetVisible(false);
    if ((result & kPaletteColorFlag) != 0) {
        toolbar_.SetColor(result & kColorMask);
        canvas_.SetPenColor(toolbar_.GetColor());
    } else {
        // Puts only the colour button's look back.
        toolbar_.SetColor(toolbar_.GetColor());
    }
    repaint();
    refreshScreen();
    return result;
}

int Controller::thicknessHandler(int type, int par1, int par2) {
    const int result = pen_toolbar_.Handler(type, par1, par2);
    if (type != EventType::PointerUp) return result;
    pen_toolbar_.SetVisible(false);
    if (isPen(result)) {
        toolbar_.SetPenThickness(result - kPenCommandBase);
        canvas_.SetPenThickness(lineWidth(toolbar_.GetPenThickness()));
    } else {
        // Puts only the pen button's look back.
        toolbar_.SetPenThickness(toolbar_.GetPenThickness());
    }
    repaint();
    refreshScreen();
    return result;
}

int Controller::command(int code) {
    if (isPen(code) && isPen(canvas_.tool_)) {
        openThickness(code);
        return code;
    }
    if (isTool(code)) {
        // The toolbar has already refreshed its own rectangle.
        canvas_.SetTool(code);
        repaint();
        return code;
    }
    switch (code) {
        case Command::Back:
            leave();
            break;
        case Command::Font:
            canvas_.ChangeFont();
            break;
        case Command::Undo:
            canvas_.Undo();
            break;
        case Command::Redo:
            canvas_.Redo();
            break;
        case Command::Delete:
            askToDelete();
            break;
        case Command::Palette:
            openPalette();
            break;
        default:
            // A press released away from its button.
            lumora_print_log2(kLogLevel, kLogFile, 174, kLogFunction, "[pid:%d]%d", g_process_pid, code);
            break;
    }
    return code;
}

void Controller::openThickness(int code) {
    canvas_.SetTool(code);
    pen_toolbar_.SetThickness(toolbar_.GetPenThickness());
    pen_toolbar_.SetVisible(true);
    pen_toolbar_.Draw();
    toolbar_.Draw();
    refreshScreen();
}

void Controller::openPalette() {
    lumora_print_log2(kLogLevel, kLogFile, 154, kLogFunction, "[pid:%d]Color", g_process_pid);
    color_toolbar_.SetColor(toolbar_.GetColor());
    color_toolbar_.SetVisible(true);
    color_toolbar_.Draw();
    refreshScreen();
}

void Controller::leave() {
    canvas_.ApplyText();
    canvas_.SaveImage();
    SetEventHandler(previous_handler_);
}

void Controller::askToDelete() {
    constexpr int kQuestionWithTwoButtons = 0x8002;  // the toolkit's dialog kind
    canvas_.ClearTextEditor();
    Dialog(kQuestionWithTwoButtons, "@Delete", "@AreYouSureYouWantToDeleteThisFile", "@Cancel", "@Delete",
           staticRemoveHandler);
}

void Controller::removeHandler(int button) {
    constexpr int kDeleteButton = 2;
    if (button == kDeleteButton) {
        removeImage();
        SetEventHandler(previous_handler_);
        return;
    }
    repaint();
    SoftUpdateHQ();
}

void Controller::removeImage() {
    const std::string path = canvas_.path_;
    if (!path.empty()) vistrel_unlink(path.c_str());
    canvas_.LoadImage("", true);
}

}  // namespace lumora::colour
