#include "platform/host/touch/sheet.h"

#include <algorithm>

namespace host {

void paintSheet(const Desk& desk, Rect area) {
    const int radius = desk.device.cornerRadius(kStandardCorner);
    const int solid = (std::min(area.w, area.h) + 1) / 2;
    desk.screen.frame(
        {.box = area, .thickness = solid, .corners = kAllCorners | kFilled, .radius = radius, .colour = kWhite});
    desk.screen.frame({.box = area, .thickness = desk.device.frameThickness(kThickLine), .radius = radius});
}

}  // namespace host
