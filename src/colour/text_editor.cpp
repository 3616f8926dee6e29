#include "colour/text_editor.h"

#include "colour/canvas.h"
#include "colour/codes.h"
#include "colour/text_frame.h"

namespace {

/// The toolkit's layout flags for the text in the frame.
constexpr int kFrameTextFlags = 0x611;
/// Asks for the keyboard at the top of the screen.
constexpr int kKeyboardAtTop = 0x400;

bool isDrag(int type) {
    return type == EventType::PointerMove || type == EventType::PointerUp || type == EventType::PointerReport;
}

}  // namespace

char TextEditor::text_[kTextSize];
TextEditor* TextEditor::instance_ = nullptr;

TextEditor::TextEditor() : frame_(iRect(0, 0, 0, 0, kFrameTextFlags)) { instance_ = this; }

bool TextEditor::IsExtraActive() const {
    return state_ == CreatingInputRect || state_ == MovingRect || state_ == ResizingRect;
}

int TextEditor::Handler(int type, int x, int y) {
    switch (state_) {
        case WaitInputRect:
            return waitInputRectHandler(type, x, y);
        case CreatingInputRect:
            return creatingInputRectHandler(type, x, y);
        case ResizeEnable:
            return resizeEnableHandler(type, x, y);
        case MovingRect:
            return movingRectHandler(type, x, y);
        case ResizingRect:
            return resizingRectHandler(type, x, y);
        default:
            return 0;
    }
}

int TextEditor::waitInputRectHandler(int type, int x, int y) {
    if (type != EventType::PointerDown) return 0;
    startFrame(x, y);
    return 1;
}

void TextEditor::startFrame(int x, int y) {
    frame_.x = x;
    frame_.y = y;
    state_ = CreatingInputRect;
}

int TextEditor::creatingInputRectHandler(int type, int x, int y) {
    if (type == EventType::PointerMove) return 1;
    if (type != EventType::PointerUp && type != EventType::PointerReport) return 0;
    canvas_->Draw();
    if (type == EventType::PointerReport) {
        // The anchor stays, so the frame always spans the first point and the latest.
        text_frame::draw(editRect(x, y));
        canvas_->Update();
        return 1;
    }
    checkEditRect(x, y);
    drawResizeRect();
    canvas_->Update();
    state_ = KeyboardOpen;
    text_[0] = '\0';
    openKeyboard();
    return 1;
}

irect_s TextEditor::editRect(int x, int y) const { return text_frame::between(frame_, x, y); }

void TextEditor::checkEditRect(int x, int y) { frame_ = editRect(x, y); }

int TextEditor::resizeEnableHandler(int type, int x, int y) {
    if (type != EventType::PointerDown) return 0;
    const text_frame::Hit hit = text_frame::hitTest(frame_, x, y);
    switch (hit.zone) {
        case text_frame::Hit::Inside:
            state_ = KeyboardOpen;
            openKeyboard();
            return 1;
        case text_frame::Hit::Outside:
            commit(CreatingInputRect);
            startFrame(x, y);
            return 1;
        case text_frame::Hit::Handle:
            resize_edges_ = hit.edges;
            state_ = ResizingRect;
            break;
        case text_frame::Hit::Band:
            state_ = MovingRect;
            break;
    }
    drag_x_ = x;
    drag_y_ = y;
    return 1;
}

int TextEditor::movingRectHandler(int type, int x, int y) {
    if (!isDrag(type)) return 0;
    return dragHandler(type, text_frame::moved(frame_, x - drag_x_, y - drag_y_));
}

int TextEditor::resizingRectHandler(int type, int x, int y) {
    if (!isDrag(type)) return 0;
    return dragHandler(type, text_frame::resized(frame_, resize_edges_, x - drag_x_, y - drag_y_));
}

int TextEditor::dragHandler(int type, const irect_s& rect) {
    if (type == EventType::PointerMove) return 1;
    // Only the release moves the frame; until then each report measures from where the drag began.
    if (type == EventType::PointerUp) frame_ = rect;
    canvas_->Draw();
    text_frame::draw(rect);
    drawTextIn(rect);
    canvas_->Update();
    if (type == EventType::PointerUp) state_ = ResizeEnable;
    return 1;
}

void TextEditor::openKeyboard() {
    // The keyboard must not hide the frame.
    const int flags = frame_.y > ScreenHeight() / 2 ? kKeyboardAtTop : 0;
    OpenKeyboard("@TextDirection", text_, kTextSize - 1, flags, staticKbdHandler);
}

void TextEditor::staticKbdHandler(char* text) { instance_->kbdHandler(text); }

void TextEditor::kbdHandler(char* /*text*/) {
    canvas_->Draw();
    if (text_[0] == '\0') {
        state_ = WaitInputRect;
    } else {
        state_ = ResizeEnable;
        drawResizeRect();
        drawText();
    }
    PartialUpdate(frame_.x, frame_.y, frame_.w, frame_.h);
}

void TextEditor::Draw() const {
    if (state_ != ResizeEnable) return;
    drawResizeRect();
    drawText();
}

void TextEditor::drawResizeRect() const { text_frame::draw(frame_); }

void TextEditor::drawText() const { drawTextIn(frame_); }

void TextEditor::drawTextIn(const irect_s& rect) const {
    if (font_ != nullptr) SetFont(font_, font_color_);
    DrawTextRect2(&rect, text_);
}

void TextEditor::ApplyText() {
    if (state_ >= CreatingInputRect) commit(WaitInputRect);
}

// The next state comes first: it keeps the canvas from drawing the frame.
void TextEditor::commit(State next) {
    state_ = next;
    canvas_->Draw();
    drawText();
    canvas_->Update();
    canvas_->SaveToHistory();
    text_[0] = '\0';
}

void TextEditor::Clear() {
    if (state_ < CreatingInputRect) return;
    text_[0] = '\0';
    state_ = WaitInputRect;
    canvas_->Draw();
    canvas_->Update();
}
