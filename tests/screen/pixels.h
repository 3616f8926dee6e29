#pragma once

#include <cstdlib>
#include <ostream>

#include "platform/host/screen/framebuffer.h"
#include "platform/host/screen/tone.h"

namespace host {

inline Rgb colourAt(const Framebuffer& pixels, int x, int y) {
    const std::uint8_t* p = pixels.at(x, y);
    return pixels.format() == PixelFormat::Grey8 ? p[0] * 0x010101 : p[0] << 16 | p[1] << 8 | p[2];
}

/// 0 white to 255 black, for pixels drawn in black on white.
inline int darknessAt(const Framebuffer& pixels, int x, int y) { return 255 - *pixels.at(x, y); }

inline double totalDarkness(const Framebuffer& pixels) {
    double sum = 0;
    for (int y = 0; y < pixels.size().h; ++y) {
        for (int x = 0; x < pixels.size().w; ++x) sum += darknessAt(pixels, x, y);
    }
    return sum / 255;
}

/// The first pixel in which the two differ by more than `levels` in a channel; {-1, -1} when there is none.
inline Point firstDifference(const Framebuffer& a, const Framebuffer& b, int levels = 0) {
    for (int y = 0; y < a.size().h; ++y) {
        for (std::size_t i = 0; i < a.stride(); ++i) {
            if (std::abs(a.at(0, y)[i] - b.at(0, y)[i]) > levels) {
                return {static_cast<int>(i) / a.bytesPerPixel(), y};
            }
        }
    }
    return {-1, -1};
}
inline constexpr Point kNowhere{-1, -1};

inline void PrintTo(Point p, std::ostream* out) { *out << '(' << p.x << ", " << p.y << ')'; }

}  // namespace host
