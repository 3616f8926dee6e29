#pragma once

#include <algorithm>
#include <cstdint>

namespace host {

/// 0x00RRGGBB.
using Rgb = int;
inline constexpr Rgb kBlack = 0x000000;
inline constexpr Rgb kWhite = 0xFFFFFF;

struct Point {
    int x = 0;
    int y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    int w = 0;
    int h = 0;
    bool operator==(const Size&) const = default;
};

/// Covers the columns x .. x + w - 1 and the rows y .. y + h - 1; empty when w or h is not positive. Edges
/// are 64-bit, so rectangles of any value can be compared and clipped.
struct Rect {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;

    bool operator==(const Rect&) const = default;

    /// First column and row beyond the rectangle.
    [[nodiscard]] constexpr std::int64_t right() const { return std::int64_t{x} + w; }
    [[nodiscard]] constexpr std::int64_t bottom() const { return std::int64_t{y} + h; }
    [[nodiscard]] constexpr bool empty() const { return w <= 0 || h <= 0; }
    [[nodiscard]] constexpr Size size() const { return {w, h}; }

    [[nodiscard]] constexpr bool contains(Point p) const {
        return p.x >= x && p.x < right() && p.y >= y && p.y < bottom();
    }

    /// The common part; an empty rectangle {} when there is none.
    [[nodiscard]] constexpr Rect intersected(const Rect& other) const {
        if (empty() || other.empty()) return {};
        const int left = std::max(x, other.x);
        const int top = std::max(y, other.y);
        const std::int64_t width = std::min(right(), other.right()) - left;
        const std::int64_t height = std::min(bottom(), other.bottom()) - top;
        if (width <= 0 || height <= 0) return {};
        return {left, top, static_cast<int>(width), static_cast<int>(height)};
    }

    /// The smallest rectangle around both; an empty one adds nothing. Both lie on a screen.
    [[nodiscard]] constexpr Rect united(const Rect& other) const {
        if (empty()) return other;
        if (other.empty()) return *this;
        const int left = std::min(x, other.x);
        const int top = std::min(y, other.y);
        return {left, top, static_cast<int>(std::max(right(), other.right()) - left),
                static_cast<int>(std::max(bottom(), other.bottom()) - top)};
    }

    /// Smaller by `margin` at each side; larger when it is negative.
    [[nodiscard]] constexpr Rect inset(int margin) const {
        return {x + margin, y + margin, w - 2 * margin, h - 2 * margin};
    }
};

}  // namespace host
