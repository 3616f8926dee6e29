#include "platform/host/keyboard/keyboard_geometry.h"

#include <algorithm>

namespace host {

namespace {

// Design units, 300 to the inch.
constexpr int kGap = 6;
constexpr int kHighestKey = 122;   // 10.3 mm: higher keys only hide more of the picture
constexpr int kHighestHead = 310;  // title and four lines of text
constexpr int kTitleHeight = 66;
constexpr int kClearWidth = 110;

// Of a tiny screen's side: gaps must not take the keys' room.
constexpr int kLeastGaps = 64;

// Of the screen's height. On a low screen keys that a finger meets come before a view of the picture's half.
constexpr double kPortraitShare = 0.45;
constexpr double kLandscapeShare = 0.5;
constexpr double kLowScreenShare = 0.6;
constexpr int kFingerKey = 100;      // design units: 8.5 mm
constexpr double kSideShare = 0.22;  // of the width, for Cancel and OK

}  // namespace

KeyboardGeometry::KeyboardGeometry(const Device& device, KeyboardEdge edge)
    : gap(std::min(device.designToPixel(kGap), std::min(device.width, device.height) / kLeastGaps)) {
    const int line = device.frameThickness(kThickLine);
    const int gaps = 6 * gap + line;
    const auto shared = [&device](double share) { return static_cast<int>(device.height * share); };
    const int fingers = 6 * device.designToPixel(kFingerKey) + gap + gaps;
    const int high = device.height >= device.width
                         ? shared(kPortraitShare)
                         : std::clamp(fingers, shared(kLandscapeShare), shared(kLowScreenShare));
    const int room = high - gaps;
    // The head holds two keys above each other, so there are six rows to share the room.
    const int key = std::max(std::min((room - gap) / 6, device.designToPixel(kHighestKey)), 1);
    const int least = 2 * key + gap;
    const int head = std::clamp(room - 4 * key, least, std::max(device.designToPixel(kHighestHead), least));

    const int height = head + 4 * key + gaps;
    const bool atTop = edge == KeyboardEdge::Top;
    area = {0, atTop ? 0 : device.height - height, device.width, height};
    border = {0, atTop ? height - line : area.y, device.width, line};

    const int top = area.y + gap + (atTop ? 0 : line);
    const int side = static_cast<int>(device.width * kSideShare);
    const int sideLeft = device.width - gap - side;
    const int endKey = (head - gap) / 2;
    cancel = {sideLeft, top, side, endKey};
    ok = {sideLeft, top + head - endKey, side, endKey};

    const int titleHeight = std::min(device.designToPixel(kTitleHeight), head / 2);
    const int clearWidth = device.designToPixel(kClearWidth);
    clear = {sideLeft - gap - clearWidth, top + titleHeight, clearWidth, head - titleHeight};
    field = {gap, clear.y, clear.x - 2 * gap, clear.h};
    title = {field.x + gap, top, field.w - 2 * gap, titleHeight};

    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i] = {gap, top + head + gap + static_cast<int>(i) * (key + gap), device.width - 2 * gap, key};
}

}  // namespace host
