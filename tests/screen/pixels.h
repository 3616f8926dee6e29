#pragma once

#include <cstdlib>
#include <ostream>
#include <vector>

#include "platform/host/screen/framebuffer.h"
#include "platform/host/screen/paint.h"

namespace host {

inline Rgb colourAt(const Framebuffer& pixels, Point at) {
    const std::uint8_t* p = pixels.at(at.x, at.y);
    return pixels.format() == PixelFormat::Grey8 ? p[0] * 0x010101 : p[0] << 16 | p[1] << 8 | p[2];
}

/// Every pixel of a buffer of that size, row by row.
inline std::vector<Point> everyPixel(Size size) {
    std::vector<Point> all;
    for (int y = 0; y < size.h; ++y)
        for (int x = 0; x < size.w; ++x) all.push_back({x, y});
    return all;
}

inline constexpr Point kNowhere{-1, -1};

/// The first pixel of `small` that differs by more than `levels` in a channel from the one of `large` which lies
/// `margin` further to the right and down.
inline Point firstDifference(const Framebuffer& small, const Framebuffer& large, int levels = 0, int margin = 0) {
    for (const Point at : everyPixel(small.size())) {
        for (int i = 0; i < small.bytesPerPixel(); ++i) {
            if (std::abs(small.at(at.x, at.y)[i] - large.at(at.x + margin, at.y + margin)[i]) > levels) return at;
        }
    }
    return kNowhere;
}

inline void PrintTo(Point p, std::ostream* out) { *out << '(' << p.x << ", " << p.y << ')'; }

}  // namespace host
