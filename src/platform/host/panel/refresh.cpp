#include "platform/host/panel/refresh.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace host {

namespace {

// The lightest grey a pen can draw with, 0xDD, has to stay visible; the rim that antialiasing lays around a stroke
// is mostly lighter than this and must not make it bolder.
constexpr int kLightestInk = 0xE0;

std::uint8_t oneBit(int darkest) { return darkest <= kLightestInk ? 0x00 : 0xFF; }

void oneBitGrey(const std::uint8_t* from, std::uint8_t* to, int width) {
    for (int x = 0; x < width; ++x) to[x] = oneBit(from[x]);
}

// The darkest channel decides: yellow is nearly as light as white, yet it is ink.
void oneBitRgb(const std::uint8_t* from, std::uint8_t* to, int width) {
    for (int x = 0; x < 3 * width; x += 3) {
        const std::uint8_t shade = oneBit(std::min(from[x], std::min(from[x + 1], from[x + 2])));
        to[x] = to[x + 1] = to[x + 2] = shade;
    }
}

}  // namespace

void refresh(const Framebuffer& screen, Rect area, Waveform waveform, Framebuffer& picture) {
    const std::size_t rowBytes = static_cast<std::size_t>(area.w) * static_cast<std::size_t>(screen.bytesPerPixel());
    for (int y = area.y; y < area.bottom(); ++y) {
        const std::uint8_t* from = screen.at(area.x, y);
        std::uint8_t* to = picture.at(area.x, y);
        if (waveform != Waveform::Fast) {
            std::memcpy(to, from, rowBytes);
        } else if (screen.format() == PixelFormat::Grey8) {
            oneBitGrey(from, to, area.w);
        } else {
            oneBitRgb(from, to, area.w);
        }
    }
}

}  // namespace host
