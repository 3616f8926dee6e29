#include "colour/text_frame.h"

#include <algorithm>

#include "colour/codes.h"

namespace {

constexpr int kHandleTouchSize = 71;  // design units: 6 mm, a fingertip
constexpr int kMinFrameSize = 142;    // design units

/// One dimension of a frame: where it begins and how long it is.
struct Extent {
    int start;
    int length;
};

int touchReach() { return design_to_pixel(kHandleTouchSize) / 2; }

bool isNear(int position, int line) {
    const int reach = touchReach();
    return position > line - reach && position < line + reach;
}

Extent extentBetween(int anchor, int pointer, int screen) {
    Extent extent = anchor > pointer ? Extent{pointer, anchor - pointer + 1} : Extent{anchor, pointer - anchor + 1};
    const int minimum = text_frame::minimumSize();
    if (extent.length < minimum) {
        if (extent.start >= screen - minimum) extent.start = screen - 1 - minimum;
        extent.length = minimum;
    }
    return extent;
}

int movedStart(const Extent& extent, int delta, int screen) {
    if (extent.start + delta < 0) delta = -extent.start;
    if (extent.start + delta + extent.length > screen) delta = screen - extent.start - extent.length;
    return extent.start + delta;
}

Extent withStartMoved(const Extent& extent, int delta) {
    const int end = extent.start + extent.length;
    const int start = std::min(std::max(extent.start + delta, 0), end - text_frame::minimumSize());
    return {start, end - start};
}

Extent withEndMoved(const Extent& extent, int delta, int screen) {
    const int end = std::min(extent.start + extent.length + delta, screen);
    return {extent.start, std::max(end - extent.start, text_frame::minimumSize())};
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

}  // namespace

namespace text_frame {

int minimumSize() { return design_to_pixel(kMinFrameSize); }

Hit hitTest(const irect_s& frame, int x, int y) {
    const int reach = touchReach();
    const int left = frame.x;
    const int top = frame.y;
    const int right = frame.x + frame.w;
    const int bottom = frame.y + frame.h;
    if (x > left + reach && x < right - reach && y > top + reach && y < bottom - reach) return {Hit::Inside, 0};
    if (x < left - reach || x > right + reach || y < top - reach || y > bottom + reach) return {Hit::Outside, 0};

    const bool near_left = isNear(x, left);
    const bool near_right = isNear(x, right);
    const bool near_top = isNear(y, top);
    const bool near_bottom = isNear(y, bottom);
    const bool on_side = (near_left || near_right) && (near_top || near_bottom || isNear(y, top + frame.h / 2));
    const bool on_middle = isNear(x, left + frame.w / 2) && (near_top || near_bottom);
    if (!on_side && !on_middle) return {Hit::Band, 0};
    return {Hit::Handle, (near_left ? kEdgeLeft : 0) + (near_right ? kEdgeRight : 0) + (near_top ? kEdgeTop : 0) +
                             (near_bottom ? kEdgeBottom : 0)};
}

irect_s between(const irect_s& anchor, int x, int y) {
    const Extent columns = extentBetween(anchor.x, x, ScreenWidth());
    const Extent rows = extentBetween(anchor.y, y, ScreenHeight());
    return iRect(columns.start, rows.start, columns.length, rows.length, anchor.flags);
}

irect_s moved(const irect_s& frame, int dx, int dy) {
    return iRect(movedStart({frame.x, frame.w}, dx, ScreenWidth()), movedStart({frame.y, frame.h}, dy, ScreenHeight()),
                 frame.w, frame.h, frame.flags);
}

irect_s resized(const irect_s& frame, int edges, int dx, int dy) {
    Extent columns = {frame.x, frame.w};
    Extent rows = {frame.y, frame.h};
    if ((edges & kEdgeLeft) != 0) columns = withStartMoved(columns, dx);
    if ((edges & kEdgeRight) != 0) columns = withEndMoved(columns, dx, ScreenWidth());
    if ((edges & kEdgeTop) != 0) rows = withStartMoved(rows, dy);
    if ((edges & kEdgeBottom) != 0) rows = withEndMoved(rows, dy, ScreenHeight());
    return iRect(columns.start, rows.start, columns.length, rows.length, frame.flags);
}

void draw(const irect_s& frame) {
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
    const int middle_x = (2 * left + frame.w) / 2;
    const int middle_y = (2 * top + frame.h) / 2;
    drawHandle(left, top);
    drawHandle(right, top);
    drawHandle(left, bottom);
    drawHandle(right, bottom);
    drawHandle(middle_x, top);
    drawHandle(middle_x, bottom);
    drawHandle(left, middle_y);
    drawHandle(right, middle_y);
}

}  // namespace text_frame
