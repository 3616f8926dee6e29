#include "colour/text_editor.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "colour/canvas.h"
#include "colour/codes.h"

namespace {

/// The toolkit's layout flags for the text in the frame.
constexpr int kFrameTextFlags = 0x611;
/// Asks for the keyboard at the top of the screen.
constexpr int kKeyboardAtTop = 0x400;

constexpr int kHandleTouchSize = 71;  // design units: 6 mm, a fingertip
constexpr int kMinFrameSize = 142;    // design units

/// The edges that a handle moves.
enum Edge : int {
    kEdgeLeft = 1,
    kEdgeRight = 2,
    kEdgeTop = 4,
    kEdgeBottom = 8,
};

bool isDrag(int type) {
    return type == EventType::PointerMove || type == EventType::PointerUp || type == EventType::PointerReport;
}

int minimumSize() { return design_to_pixel(kMinFrameSize); }

int touchReach() { return design_to_pixel(kHandleTouchSize) / 2; }

bool isNear(int position, int line) {
    const int reach = touchReach();
    return position > line - reach && position < line + reach;
}

/// The edges of the handle under the point; 0 where there is none.
int handleAt(const irect_s& frame, int x, int y) {
    const bool left = isNear(x, frame.x);
    const bool right = isNear(x, frame.x + frame.w);
    const bool top = isNear(y, frame.y);
    const bool bottom = isNear(y, frame.y + frame.h);
    const bool on_side = (left || right) && (top || bottom || isNear(y, frame.y + frame.h / 2));
    const bool on_middle = isNear(x, frame.x + frame.w / 2) && (top || bottom);
    if (!on_side && !on_middle) return 0;
    return (left ? kEdgeLeft : 0) + (right ? kEdgeRight : 0) + (top ? kEdgeTop : 0) + (bottom ? kEdgeBottom : 0);
}

/// One dimension of a frame: where it begins and how long it is.
struct Extent {
    int start;
    int length;
};

/// Both points and what lies between them, at least the minimum; moved back onto the screen where that made it longer.
Extent between(int anchor, int pointer, int screen) {
    Extent extent = {std::min(anchor, pointer), std::abs(pointer - anchor) + 1};
    const int minimum = minimumSize();
    if (extent.length < minimum) {
        if (extent.start >= screen - minimum) extent.start = screen - 1 - minimum;
        extent.length = minimum;
    }
    return extent;
}

int movedStart(const Extent& extent, int delta, int screen) {
    return std::min(std::max(extent.start + delta, 0), screen - extent.length);
}

Extent withStartMoved(const Extent& extent, int delta) {
    const int end = extent.start + extent.length;
    const int start = std::min(std::max(extent.start + delta, 0), end - minimumSize());
    return {start, end - start};
}

Extent withEndMoved(const Extent& extent, int delta, int screen) {
    const int end = std::min(extent.start + extent.length + delta, screen);
    return {extent.start, std::max(end - extent.start, minimumSize())};
}

// The dashes keep to the screen's own columns and rows, five pixels long.
int dashColor(int position) {
    constexpr int kDash = 5;
    return position / kDash % 2 == 0 ? kWhite : kBlack;
}

void drawHandle(int x, int y) {
    constexpr int kHandle = 7;
    FillArea(x - kHandle / 2, y - kHandle / 2, kHandle, kHandle, kBlack);
}

/// The dashed outline and the eight handles. Its lines lie on the columns x and x + w and the rows y and y + h, so it
/// is one pixel larger than w × h.
void drawFrame(const irect_s& frame) {
    const int left = frame.x;
    const int top = frame.y;
    const int right = frame.x + frame.w;
    const int bottom = frame.y + frame.h;
    for (int x = left; x < right; ++x) {
        DrawPixel(x, top, dashColor(x));
        DrawPixel(x, bottom, dashColor(x));
    }
    for (int y = top; y < bottom; ++y) {
        DrawPixel(left, y, dashColor(y));
        DrawPixel(right, y, dashColor(y));
    }
    for (const int y : {top, bottom}) {
        drawHandle(left, y);
        drawHandle(right, y);
    }
    for (const int y : {top, bottom}) drawHandle((left + right) / 2, y);
    for (const int x : {left, right}) drawHandle(x, (top + bottom) / 2);
}

std::vector<int> parseSizes(std::string_view list) {
    // A theme may list more sizes; only these count.
    constexpr std::size_t kMostSizes = 128;
    std::vector<int> sizes;
    while (!list.empty() && sizes.size() < kMostSizes) {
        const std::size_t comma = std::min(list.find(','), list.size());
        if (comma > 0) sizes.push_back(static_cast<int>(std::strtol(std::string(list, 0, comma).c_str(), nullptr, 10)));
        list.remove_prefix(std::min(comma + 1, list.size()));
    }
    return sizes;
}

int defaultFontSize() {
    constexpr int kSizeWithoutList = 18;
    constexpr std::size_t kLastIndex = 7;
    const std::vector<int> sizes = parseSizes(GetThemeString("font_sizes", "18,28,62"));
    if (sizes.empty()) return kSizeWithoutList;
    const int reader_size = GetThemeInt("reader.default.font", 0);
    if (reader_size != 0) {
        std::fprintf(stderr, "DEBUG: def font size (reader.default.font): %u\n", static_cast<unsigned>(reader_size));
        return reader_size;
    }
    // A third of the way up the list, at most the eighth.
    const std::size_t index = std::min(7 * sizes.size() / 20, kLastIndex);
    const int size = sizes[index];
    std::fprintf(stderr, "DEBUG: def font size[%u]: %u\n", static_cast<unsigned>(index), static_cast<unsigned>(size));
    return size;
}

}  // namespace

char TextEditor::text_[kTextSize];
char TextEditor::font_name_[kFontNameSize];
int TextEditor::font_size_ = 0;
TextEditor* TextEditor::instance_ = nullptr;

TextEditor::TextEditor() : frame_{0, 0, 0, 0, kFrameTextFlags} { instance_ = this; }

void TextEditor::SetActive(bool on) {
    if (!on && state_ >= CreatingInputRect) commit(Inactive);
    if (on) state_ = WaitInputRect;
    if (font_ != nullptr || state_ == Inactive) return;
    std::snprintf(font_name_, kFontNameSize - 1, "%s", vistrel_get_default_font(0));
    font_size_ = defaultFontSize();
    font_ = OpenFont(font_name_, font_size_, 0);
}

void TextEditor::SetFontColor(int color) {
    font_color_ = color;
    if (font_ != nullptr) SetFont(font_, color);
}

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
    const irect_s anchor = frame_;
    checkEditRect(x, y);
    drawResizeRect();
    canvas_->Update();
    if (type == EventType::PointerReport) {
        // The anchor stays, so the frame always spans the first point and the latest.
        frame_ = anchor;
        return 1;
    }
    text_[0] = '\0';
    openKeyboard();
    return 1;
}

void TextEditor::checkEditRect(int x, int y) {
    const Extent columns = between(frame_.x, x, ScreenWidth());
    const Extent rows = between(frame_.y, y, ScreenHeight());
    frame_ = {columns.start, rows.start, columns.length, rows.length, frame_.flags};
}

int TextEditor::resizeEnableHandler(int type, int x, int y) {
    if (type != EventType::PointerDown) return 0;
    const int reach = touchReach();
    const int right = frame_.x + frame_.w;
    const int bottom = frame_.y + frame_.h;
    if (x > frame_.x + reach && x < right - reach && y > frame_.y + reach && y < bottom - reach) {
        openKeyboard();
        return 1;
    }
    if (x < frame_.x - reach || x > right + reach || y < frame_.y - reach || y > bottom + reach) {
        commit(CreatingInputRect);
        startFrame(x, y);
        return 1;
    }
    resize_edges_ = handleAt(frame_, x, y);
    state_ = resize_edges_ != 0 ? ResizingRect : MovingRect;
    drag_x_ = x;
    drag_y_ = y;
    return 1;
}

int TextEditor::movingRectHandler(int type, int x, int y) {
    if (!isDrag(type)) return 0;
    const int left = movedStart({frame_.x, frame_.w}, x - drag_x_, ScreenWidth());
    const int top = movedStart({frame_.y, frame_.h}, y - drag_y_, ScreenHeight());
    return dragHandler(type, {left, top, frame_.w, frame_.h, frame_.flags});
}

int TextEditor::resizingRectHandler(int type, int x, int y) {
    if (!isDrag(type)) return 0;
    Extent columns = {frame_.x, frame_.w};
    Extent rows = {frame_.y, frame_.h};
    if ((resize_edges_ & kEdgeLeft) != 0) columns = withStartMoved(columns, x - drag_x_);
    if ((resize_edges_ & kEdgeRight) != 0) columns = withEndMoved(columns, x - drag_x_, ScreenWidth());
    if ((resize_edges_ & kEdgeTop) != 0) rows = withStartMoved(rows, y - drag_y_);
    if ((resize_edges_ & kEdgeBottom) != 0) rows = withEndMoved(rows, y - drag_y_, ScreenHeight());
    return dragHandler(type, {columns.start, rows.start, columns.length, rows.length, frame_.flags});
}

int TextEditor::dragHandler(int type, const irect_s& rect) {
    if (type == EventType::PointerMove) return 1;
    // Only the release moves the frame; until then each report measures from where the drag began.
    if (type == EventType::PointerUp) frame_ = rect;
    canvas_->Draw();
    drawFrame(rect);
    drawTextIn(rect);
    canvas_->Update();
    if (type == EventType::PointerUp) state_ = ResizeEnable;
    return 1;
}

void TextEditor::openKeyboard() {
    state_ = KeyboardOpen;
    // The keyboard must not hide the frame.
    const int flags = frame_.y > ScreenHeight() / 2 ? kKeyboardAtTop : 0;
    OpenKeyboard("@TextDirection", text_, kTextSize - 1, flags, staticKbdHandler);
}

void TextEditor::staticKbdHandler(char* text) { instance_->kbdHandler(text); }

void TextEditor::kbdHandler(char* /*text*/) {
    canvas_->Draw();
    state_ = text_[0] == '\0' ? WaitInputRect : ResizeEnable;
    Draw();
    PartialUpdate(frame_.x, frame_.y, frame_.w, frame_.h);
}

void TextEditor::ChangeFont() const {
    char font[256];
    std::snprintf(font, sizeof font - 1, "%s,%u", font_name_, static_cast<unsigned>(font_size_));
    OpenFontSelector(GetLangText("@Font"), font, 1, staticFontHandler);
}

void TextEditor::staticFontHandler(char* font, char* font2, char* font3, char* font4) {
    instance_->fontHandler(font, font2, font3, font4);
}

void TextEditor::fontHandler(char* font, char* /*font2*/, char* /*font3*/, char* /*font4*/) {
    constexpr std::size_t kMostDigits = 9;

    const char* comma = std::strchr(font, ',');
    if (comma == nullptr) return;
    const std::string_view name(font, static_cast<std::size_t>(comma - font));
    // A choice that does not fit is refused whole; half a name would open some other font.
    if (name.size() >= kFontNameSize || std::strlen(comma + 1) > kMostDigits) return;

    font_name_[name.copy(font_name_, name.size())] = '\0';
    font_size_ = static_cast<int>(std::strtol(comma + 1, nullptr, 10));
    if (font_ != nullptr) CloseFont(font_);
    font_ = OpenFont(font_name_, font_size_, 0);
    if (state_ != ResizeEnable) return;
    canvas_->Draw();
    drawResizeRect();
    drawText();
    canvas_->Update();
}

void TextEditor::Draw() const {
    if (state_ != ResizeEnable) return;
    drawResizeRect();
    drawText();
}

void TextEditor::drawResizeRect() const { drawFrame(frame_); }

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
