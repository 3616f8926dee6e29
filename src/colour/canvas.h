#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "colour/text_editor.h"
#include "platform/smart_bitmap.h"
#include "platform/splines.h"
#include "platform/vistrel.h"

class Toolbar;

namespace lumora::colour {
class Controller;
}

/// The drawing surface below the toolbar: the page, its file, the stroke in progress, undo and redo, and the text
/// editor. Draws into the screen buffer; every refresh is an explicit call.
class Canvas {
public:
    /// Asks once whether the file that turns the keep-alive timer off exists.
    Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    void SetPosition(const irect_s& rect) { rect_ = rect; }
    /// Any tool but the text tool deactivates the text editor, which commits an open box.
    void SetTool(int tool);
    /// Line width in pixels.
    void SetPenThickness(int thickness) { pen_thickness_ = thickness; }
    /// 0xRRGGBB; text boxes take the colour too.
    void SetPenColor(int color);

    /// Replaces the picture and drops the history. An empty path, or one that does not load, gives a white page, which
    /// keeps the path for saving. Refreshes nothing. The flag makes no difference.
    void LoadImage(const std::string& path, bool is_new);
    /// Writes what the canvas shows to the picture's path, or removes that file when the page is white. The
    /// user goes on in any case: a failure is not told here.
    void SaveImage();
    /// True when every pixel is white: the first width × depth / 8 bytes of each row are 0xFF. So is a bitmap without
    /// rows.
    static bool isBlank(const bitmap_s& bitmap);

    /// 0, or with the text tool what the text editor answers.
    int Handler(int type, int x, int y);

    /// Paints page and text box; refreshes nothing.
    void Draw();
    /// Refreshes the canvas rectangle.
    void Update() const;

    void ClearTextEditor() { text_editor_.Clear(); }
    void ApplyText() { text_editor_.ApplyText(); }
    void ChangeFont() { text_editor_.ChangeFont(); }

    /// Records a change that has been drawn into the screen buffer, while the page still is the one before it.
    void SaveToHistory();
    /// One step back, at most five; always discards an open text box.
    void Undo();
    void Redo();

private:
    friend class lumora::colour::Controller;

    int penHandler(int type, int x, int y);
    void startStroke(int x, int y);
    void refreshMove();
    void finishStroke();
    void trail(int x, int y, bool final);
    void erase(int x, int y);
    void drawSegment(int i);
    /// The x and y pieces from point `i` to the next, shaped by `k` points (1 to 5) on either side.
    [[nodiscard]] std::pair<lumora::graphics::CubicSpline, lumora::graphics::CubicSpline> getSpline(int i, int k) const;
    void extendDirty(int left, int top, int right, int bottom);
    void paintChanges();
    static void update_timer_callback(void* canvas);
    static void keep_alive();

    void snapshot();
    void dropHistory();
    void showPage(const SmartBitmap& page);

    /// Seconds of keep-alive after a pointer-down.
    static int keepalive_time_;
    /// Ticks left.
    static int keepalive_counter_;

    irect_s rect_{};
    int tool_ = 0;
    int pen_thickness_ = 1;
    int pen_color_ = 0;
    int last_x_ = 0;
    int last_y_ = 0;
    // Inclusive edges of what was drawn since the last fast refresh.
    int dirty_left_ = 0;
    int dirty_top_ = 0;
    int dirty_right_ = 0;
    int dirty_bottom_ = 0;
    bool drawing_ = false;
    int move_count_ = 0;
    /// Borrowed from the controller; the eraser repaints it.
    Toolbar* toolbar_ = nullptr;
    TextEditor text_editor_;
    /// Earlier pages, oldest in front, at most five. All pages share their pixels.
    std::deque<SmartBitmap> history_;
    SmartBitmap page_;
    /// The newest page while the user has stepped back; else empty.
    SmartBitmap redo_top_;
    /// The number of steps that Undo can still go back.
    unsigned int history_pos_ = 0;
    std::string path_;
    std::vector<lumora::graphics::PointD> points_;
};
