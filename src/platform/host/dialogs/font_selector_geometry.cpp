#include "platform/host/dialogs/font_selector_geometry.h"

#include <algorithm>

namespace host {

namespace {

// Design units, 300 to the inch.
constexpr int kScreenMargin = 30;
constexpr int kWidest = 1100;
constexpr int kWidestBeside = 1700;
constexpr int kHighest = 1760;
constexpr int kPadding = 36;
constexpr int kGap = 16;
constexpr int kTouch = 100;   // 8.5 mm, a fingertip
constexpr int kHead = 110;    // as high as the arrow icons ask for
constexpr int kSample = 190;  // two lines of the usual size, one of the largest
constexpr int kPageButton = 130;
constexpr int kPageText = 230;  // "28 / 31"

// What three rows and everything else take; where the panel is less high, all lengths shrink alike.
constexpr int kLeastHeight = 980;
constexpr int kLeastHeightBeside = 620;

constexpr int kColumnsBelow = 6;
constexpr int kColumnsBeside = 4;

/// Cuts slices off a rectangle, with a gap between slice and rest.
struct Slicer {
    Rect rest;
    int gap;

    Rect top(int height) {
        const Rect slice{rest.x, rest.y, rest.w, height};
        rest.y += height + gap;
        rest.h -= height + gap;
        return slice;
    }
    Rect bottom(int height) {
        rest.h -= height + gap;
        return {rest.x, rest.y + rest.h + gap, rest.w, height};
    }
    Rect right(int width) {
        rest.w -= width + gap;
        return {rest.x + rest.w + gap, rest.y, width, rest.h};
    }
};

int sizeRowsHeight(int count, int columns, int touch, int gap) {
    const int rows = (count + columns - 1) / columns;
    return rows * touch + std::max(rows - 1, 0) * gap;
}

}  // namespace

FontSelectorGeometry::FontSelectorGeometry(const Device& device, int sizes) {
    const bool beside = device.width > device.height;
    placePanel(device, beside ? kWidestBeside : kWidest);
    const int least = device.designToPixel(beside ? kLeastHeightBeside : kLeastHeight);
    const double shrunk = std::min(1.0, static_cast<double>(panel.h) / least);
    const auto px = [&](int units) { return static_cast<int>(device.designToPixel(units) * shrunk); };

    const int gap = px(kGap);

    Slicer column{panel.inset(px(kPadding)), gap};
    Slicer other = column;
    if (beside) other.rest = column.right(column.rest.w * 9 / 20);
    placeHead(column.top(px(kHead)), px(kPageButton), px(kPageText), gap);
    Slicer& lower = beside ? other : column;
    const int columns = beside ? kColumnsBeside : kColumnsBelow;
    placeEnd(lower.bottom(px(kTouch)), gap);
    sample = beside ? Rect{} : lower.bottom(px(kSample));
    if (sizes > 0) placeSizes(lower.bottom(sizeRowsHeight(sizes, columns, px(kTouch), gap)), sizes, columns, gap);
    if (beside) sample = other.rest;
    list = column.rest;
    rows = std::max(list.h / px(kTouch), 1);
}

void FontSelectorGeometry::placePanel(const Device& device, int widest) {
    const int margin = device.designToPixel(kScreenMargin);
    const int width = std::min(device.width - 2 * margin, device.designToPixel(widest));
    const int height = std::min(device.height - 2 * margin, device.designToPixel(kHighest));
    panel = {(device.width - width) / 2, (device.height - height) / 2, width, height};
}

void FontSelectorGeometry::placeHead(Rect row, int button, int text, int gap) {
    Slicer head{row, 0};
    next = head.right(button);
    page = head.right(text);
    previous = head.right(button);
    title = head.rest;
    title.w -= gap;
}

void FontSelectorGeometry::placeSizes(Rect area, int count, int columns, int gap) {
    const int rowCount = (count + columns - 1) / columns;
    const int height = (area.h - (rowCount - 1) * gap) / rowCount;
    for (int i = 0; i < count; ++i) {
        // Both edges from the whole width, so that rounding leaves no uneven end.
        const int left = (area.w + gap) * (i % columns) / columns;
        const int right = (area.w + gap) * (i % columns + 1) / columns - gap;
        sizeButtons.push_back({area.x + left, area.y + i / columns * (height + gap), right - left, height});
    }
}

void FontSelectorGeometry::placeEnd(Rect row, int gap) {
    const int width = (row.w - gap) / 2;
    cancel = {row.x, row.y, width, row.h};
    ok = {row.x + row.w - width, row.y, width, row.h};
}

}  // namespace host
