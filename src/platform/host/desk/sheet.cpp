#include "platform/host/desk/sheet.h"

#include <algorithm>

namespace host {

namespace {

constexpr int kThickLine = -3;
constexpr int kStandardCorner = -100;
constexpr int kAllCornersFilled = 15 | kFilled;

}  // namespace

void paintSheet(const Desk& desk, Rect area) {
    const int radius = desk.device.cornerRadius(kStandardCorner);
    const int solid = (std::min(area.w, area.h) + 1) / 2;
    desk.screen.frame(
        {.box = area, .thickness = solid, .corners = kAllCornersFilled, .radius = radius, .colour = kWhite});
    desk.screen.frame({.box = area, .thickness = desk.device.frameThickness(kThickLine), .radius = radius});
}

}  // namespace host
