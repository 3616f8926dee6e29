#include "platform/host/panel/area_scaler.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

// The weights of one pixel add up to this, so a 16-bit sum holds the brightest pixel and white stays white.
constexpr int kWhole = 256;

std::uint32_t grey(std::uint32_t shade) { return shade * 0x010101U; }

std::uint32_t rgb(std::uint32_t r, std::uint32_t g, std::uint32_t b) { return r << 16U | g << 8U | b; }

std::uint32_t* rowOf(PixelRows rows, int y) {
    // The rows of a surface are aligned for its pixels.
    return reinterpret_cast<std::uint32_t*>(rows.pixels + static_cast<std::size_t>(y) * rows.pitch);
}

}  // namespace

AreaScaler::Axis::Axis(int from, int to) {
    taps.reserve(static_cast<std::size_t>(to));
    for (std::int64_t i = 0; i < to; ++i) {
        // Edges in units of 1 / to source pixels.
        const std::int64_t begin = i * from;
        const std::int64_t end = begin + from;
        const int first = static_cast<int>(begin / to);
        const int last = static_cast<int>((end - 1) / to);
        taps.push_back({first, last - first + 1, weights.size()});
        // Each weight is the rise of the rounded running total, so rounding never adds up.
        std::int64_t before = 0;
        for (int pixel = first; pixel <= last; ++pixel) {
            const std::int64_t reached = std::min<std::int64_t>(end, (std::int64_t{pixel} + 1) * to) - begin;
            const std::int64_t total = (reached * kWhole + from / 2) / from;
            weights.push_back(static_cast<std::uint16_t>(total - before));
            before = total;
        }
    }
}

AreaScaler::AreaScaler(Size from, Size to)
    : same_(from == to), columns_(from.w, to.w), rows_(from.h, to.h), sums_(static_cast<std::size_t>(from.w) * 3) {}

void AreaScaler::scale(const Framebuffer& picture, Rect area, PixelRows into) {
    if (same_) {
        copy(picture, area, into);
        return;
    }
    const int channels = picture.bytesPerPixel();
    const Tap& left = columns_.taps[static_cast<std::size_t>(area.x)];
    const Tap& right = columns_.taps[static_cast<std::size_t>(area.right() - 1)];
    const int bytes = (right.first + right.count - left.first) * channels;
    for (int y = 0; y < area.h; ++y) {
        sumRows(picture, rows_.taps[static_cast<std::size_t>(area.y + y)], left.first * channels, bytes);
        sumColumns(area, left.first, channels, rowOf(into, y));
    }
}

void AreaScaler::copy(const Framebuffer& picture, Rect area, PixelRows into) const {
    for (int y = 0; y < area.h; ++y) {
        const std::uint8_t* from = picture.at(area.x, area.y + y);
        std::uint32_t* to = rowOf(into, y);
        if (picture.format() == PixelFormat::Grey8) {
            std::transform(from, from + area.w, to, grey);
            continue;
        }
        for (int x = 0; x < area.w; ++x, from += 3) to[x] = rgb(from[0], from[1], from[2]);
    }
}

void AreaScaler::sumRows(const Framebuffer& picture, const Tap& rows, int firstByte, int bytes) {
    std::fill_n(sums_.begin(), bytes, std::uint16_t{0});
    for (int i = 0; i < rows.count; ++i) {
        const std::uint8_t* row = picture.at(0, rows.first + i) + firstByte;
        const std::uint16_t weight = rows_.weights[rows.weights + static_cast<std::size_t>(i)];
        std::uint16_t* sums = sums_.data();
        for (int x = 0; x < bytes; ++x) sums[x] = static_cast<std::uint16_t>(sums[x] + row[x] * weight);
    }
}

void AreaScaler::sumColumns(const Rect& area, int firstColumn, int channels, std::uint32_t* into) const {
    constexpr std::uint32_t kHalf = kWhole * kWhole / 2;
    constexpr unsigned kShift = 16;  // kWhole in each direction
    for (int x = 0; x < area.w; ++x) {
        const Tap& tap = columns_.taps[static_cast<std::size_t>(area.x + x)];
        const std::uint16_t* weight = columns_.weights.data() + tap.weights;
        const std::uint16_t* sum = sums_.data() + (tap.first - firstColumn) * channels;
        std::uint32_t total[3] = {kHalf, kHalf, kHalf};
        for (int i = 0; i < tap.count; ++i) {
            for (int c = 0; c < channels; ++c) total[c] += std::uint32_t{*sum++} * weight[i];
        }
        into[x] =
            channels == 1 ? grey(total[0] >> kShift) : rgb(total[0] >> kShift, total[1] >> kShift, total[2] >> kShift);
    }
}

}  // namespace host
