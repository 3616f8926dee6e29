#include "platform/host/screen/screen.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/host/screen/blit.h"
#include "platform/host/screen/frame_painter.h"
#include "platform/host/screen/paint.h"

namespace host {

namespace {

/// A line seen along its longer side, on which every step is one pixel. It runs forwards, so both directions of a
/// line give the same pixels.
struct Slope {
    Slope(Point from, Point to) {
        const std::int64_t dx = std::int64_t{to.x} - from.x;
        const std::int64_t dy = std::int64_t{to.y} - from.y;
        steep = std::abs(dy) > std::abs(dx);
        if (steep ? dy < 0 : dx < 0) std::swap(from, to);
        start = steep ? from.y : from.x;
        startAcross = steep ? from.x : from.y;
        length = static_cast<std::uint64_t>(std::max(std::abs(dx), std::abs(dy)));
        lengthAcross = static_cast<std::uint64_t>(std::min(std::abs(dx), std::abs(dy)));
        falls = steep ? to.x < from.x : to.y < from.y;
    }

    /// Place across the line's direction at that many steps from its start; no product exceeds 64 bits.
    [[nodiscard]] std::int64_t across(std::uint64_t steps) const {
        const auto shift = length == 0 ? 0 : static_cast<std::int64_t>((steps * lengthAcross + length / 2) / length);
        return falls ? startAcross - shift : startAcross + shift;
    }

    bool steep;
    bool falls;
    std::int64_t start;
    std::int64_t startAcross;
    std::uint64_t length;
    std::uint64_t lengthAcross;
};

}  // namespace

Screen::Screen(Size size, PixelFormat format) : buffer_(size, format), damage_(size), ink_(size) {}

void Screen::changed(Rect area) {
    damage_.add(area);
    ink_.forget(area);
}

void Screen::clear() { fill(buffer_.bounds(), kWhite); }

void Screen::fill(Rect area, Rgb colour) {
    fillArea(buffer_, area, colour);
    changed(area);
}

void Screen::line(Point from, Point to, Rgb colour) {
    const Slope slope(from, to);
    const std::int64_t edge = slope.steep ? buffer_.size().h : buffer_.size().w;
    const std::int64_t first = std::max<std::int64_t>(slope.start, 0);
    const std::int64_t last = std::min(slope.start + static_cast<std::int64_t>(slope.length), edge - 1);
    if (slope.lengthAcross == 0 && first <= last) {
        const auto place = static_cast<int>(first);
        const auto across = static_cast<int>(slope.startAcross);
        const auto length = static_cast<int>(last - first + 1);
        fill(slope.steep ? Rect{across, place, 1, length} : Rect{place, across, length, 1}, colour);
        return;
    }
    for (std::int64_t place = first; place <= last; ++place) {
        const std::int64_t across = slope.across(static_cast<std::uint64_t>(place - slope.start));
        const std::int64_t x = slope.steep ? across : place;
        const std::int64_t y = slope.steep ? place : across;
        if (x < 0 || y < 0 || x >= buffer_.size().w || y >= buffer_.size().h) continue;
        pixel({static_cast<int>(x), static_cast<int>(y)}, colour);
    }
}

void Screen::pixel(Point at, Rgb colour) { fill({at.x, at.y, 1, 1}, colour); }

void Screen::draw(Point topLeft, const bitmap_s& bitmap) {
    if (!drawable(bitmap)) {
        std::fprintf(stderr, "colour: a bitmap of depth %d with rows of %d bytes for %d pixels cannot be drawn\n",
                     bitmap.depth, bitmap.scanline, bitmap.width);
        return;
    }
    const Rect area = Rect{topLeft.x, topLeft.y, bitmap.width, bitmap.height}.intersected(buffer_.bounds());
    if (area.empty()) return;
    drawBitmap(buffer_, topLeft, bitmap, area, damage_);
    ink_.forget(area);
}

void Screen::frame(const Frame& frame) {
    paintFrame(buffer_, frame);
    changed(frame.box);
}

void Screen::tint(Point topLeft, const Coverage& coverage, Rect clip, Rgb colour) {
    const Rect shape{topLeft.x, topLeft.y, coverage.size.w, coverage.size.h};
    const Rect area = shape.intersected(clip).intersected(buffer_.bounds());
    if (area.empty()) return;
    const Paint paint(colour, buffer_.format());
    for (int y = area.y; y < area.bottom(); ++y) {
        const std::ptrdiff_t row = std::ptrdiff_t{y} - topLeft.y;
        const std::ptrdiff_t left = std::ptrdiff_t{area.x} - topLeft.x;
        paint.blend(buffer_.at(area.x, y), coverage.rows + row * coverage.stride + left, area.w);
    }
    changed(area);
}

Rect Screen::ink(const lumora::graphics::CubicSpline& x, const lumora::graphics::CubicSpline& y, int resolution,
                 Rgb colour, int width) {
    const Rect touched = ink_.draw(buffer_, x, y, resolution, colour, width);
    damage_.add(touched);
    return touched;
}

BitmapPtr Screen::capture(Rect area) const { return captureArea(buffer_, area); }

}  // namespace host
