#pragma once

#include "platform/vistrel.h"

class Canvas;

/// Places one text box at a time on the canvas: a frame dragged out, text from the on-screen keyboard, then moving,
/// resizing and editing until it is committed into the picture or discarded. Nothing it draws becomes part of the
/// picture before a commit. Owned by the canvas; the toolkit's callbacks reach it through `instance_`.
class TextEditor {
public:
    enum State : int {
        Inactive = 0,
        WaitInputRect = 1,
        CreatingInputRect = 2,
        KeyboardOpen = 3,
        ResizeEnable = 4,
        MovingRect = 5,
        ResizingRect = 6,
    };

    TextEditor();
    TextEditor(const TextEditor&) = delete;
    TextEditor& operator=(const TextEditor&) = delete;

    /// The canvas is borrowed and outlives the editor.
    void SetCanvas(Canvas* canvas) { canvas_ = canvas; }

    /// True for the text tool, false for any other: deactivating commits an open box, activating drops it. Opens the
    /// default font the first time.
    void SetActive(bool on);
    void SetFontColor(int color);

    /// 1 when the event was taken, else 0.
    int Handler(int type, int x, int y);
    /// A drag is in progress; the canvas then keeps the pointer inside its rectangle.
    [[nodiscard]] bool IsExtraActive() const;
    /// Paints the shown box; refreshes nothing.
    void Draw() const;

    /// Opens the font selector, in any state.
    void ChangeFont() const;
    /// Commits an open box into the picture, as one undo step.
    void ApplyText();
    /// Discards an open box.
    void Clear();

    static void staticKbdHandler(char* text);
    static void staticFontHandler(char* font, char* font2, char* font3, char* font4);

private:
    static constexpr int kTextSize = 1024;
    static constexpr int kFontNameSize = 128;

    int waitInputRectHandler(int type, int x, int y);
    int creatingInputRectHandler(int type, int x, int y);
    int resizeEnableHandler(int type, int x, int y);
    int movingRectHandler(int type, int x, int y);
    int resizingRectHandler(int type, int x, int y);

    /// Makes `frame_` the rectangle between its corner and the point, of at least the minimum size.
    void checkEditRect(int x, int y);
    int dragHandler(int type, const irect_s& rect);
    void startFrame(int x, int y);
    void openKeyboard();

    void drawResizeRect() const;
    void drawText() const;
    void drawTextIn(const irect_s& rect) const;
    void commit(State next);

    void kbdHandler(char* text);
    void fontHandler(char* font, char* font2, char* font3, char* font4);

    // One text and one font in the process: the toolkit's callbacks carry no context.
    static char text_[kTextSize];
    static char font_name_[kFontNameSize];
    static int font_size_;
    static TextEditor* instance_;

    font_s* font_ = nullptr;
    int state_ = Inactive;
    irect_s frame_;
    Canvas* canvas_ = nullptr;
    int resize_edges_ = 0;
    int drag_x_ = 0;
    int drag_y_ = 0;
    int font_color_ = 0;
};
