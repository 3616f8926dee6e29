#include "platform/host/screen/area_scaler.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

// The weights of one pixel add up to this, so a 16-bit sum holds the brightest pixel and white stays white.
constexpr int kWhole = 256;

// Pixels that are scaled at once: short enough to find the white between the lines of a drawing.
constexpr int kSpan = 64;

}  // namespace

AreaScaler::Axis::Axis(int from, int to)
    : taps(std::min(from, (from + to - 1) / to + (from % to == 0 ? 0 : 1))), first(static_cast<std::size_t>(to)) {
    weights.reserve(first.size() * static_cast<std::size_t>(taps));
    for (std::int64_t i = 0; i < to; ++i) {
        // Edges in units of 1 / to source pixels.
        const std::int64_t begin = i * from;
        const std::int64_t end = begin + from;
        const int start = static_cast<int>(std::min<std::int64_t>(begin / to, from - taps));
        first[static_cast<std::size_t>(i)] = start;
        // Each weight is the rise of the rounded running total, so rounding never adds up.
        std::int64_t before = 0;
        for (std::int64_t pixel = start; pixel < start + taps; ++pixel) {
            const std::int64_t covered = std::clamp((pixel + 1) * to, begin, end) - begin;
            const std::int64_t total = (covered * kWhole + from / 2) / from;
            weights.push_back(static_cast<std::uint16_t>(total - before));
            before = total;
        }
    }
}

AreaScaler::AreaScaler(Size from, Size to)
    : columns_(from.w, to.w), rows_(from.h, to.h), sums_(static_cast<std::size_t>(from.w) * 3) {}

void AreaScaler::scaleRow(const PixelRows& picture, Point first, int width, std::uint8_t* into) {
    for (int x = 0; x < width; x += kSpan)
        scaleSpan(picture, {first.x + x, first.y}, std::min(kSpan, width - x),
                  into + std::ptrdiff_t{x} * picture.channels);
}

void AreaScaler::scaleSpan(const PixelRows& picture, Point first, int width, std::uint8_t* into) {
    const int left = columns_.first[static_cast<std::size_t>(first.x)];
    const int right = columns_.first[static_cast<std::size_t>(first.x + width - 1)] + columns_.taps;
    const int bytes = (right - left) * picture.channels;
    const std::uint8_t* top = picture.pixels + std::ptrdiff_t{left} * picture.channels +
                              static_cast<std::size_t>(rows_.first[static_cast<std::size_t>(first.y)]) * picture.stride;
    // Paper is white nearly everywhere; looking costs a small part of scaling.
    unsigned common = 0xFF;
    const std::uint8_t* row = top;
    for (int i = 0; i < rows_.taps; ++i, row += picture.stride)
        for (int x = 0; x < bytes; ++x) common &= row[x];
    if (common == 0xFF) {
        std::fill_n(into, width * picture.channels, std::uint8_t{0xFF});
        return;
    }
    std::fill_n(sums_.begin(), bytes, std::uint16_t{0});
    row = top;
    for (int i = 0; i < rows_.taps; ++i, row += picture.stride) {
        const std::uint16_t weight = rows_.weightsOf(first.y)[i];
        std::uint16_t* sums = sums_.data();
        for (int x = 0; x < bytes; ++x) sums[x] = static_cast<std::uint16_t>(sums[x] + row[x] * weight);
    }
    if (picture.channels == 1) {
        sumColumns<1>(first.x, width, into);
    } else {
        sumColumns<3>(first.x, width, into);
    }
}

template <int kChannels>
void AreaScaler::sumColumns(int column, int width, std::uint8_t* into) const {
    constexpr std::uint32_t kWholeArea = kWhole * kWhole;
    const int* first = columns_.first.data() + column;
    const std::uint16_t* weight = columns_.weightsOf(column);
    for (int x = 0; x < width; ++x, weight += columns_.taps) {
        const std::uint16_t* sum = sums_.data() + std::ptrdiff_t{first[x] - first[0]} * kChannels;
        for (int channel = 0; channel < kChannels; ++channel, ++sum) {
            std::uint32_t total = kWholeArea / 2;
            for (int i = 0; i < columns_.taps; ++i) total += std::uint32_t{sum[i * kChannels]} * weight[i];
            *into++ = static_cast<std::uint8_t>(total / kWholeArea);
        }
    }
}

BitmapPtr shrunk(BitmapPtr picture, Size room) {
    const Size size{picture->width, picture->height};
    const double factor = std::min(1.0 * room.w / size.w, 1.0 * room.h / size.h);
    if (factor >= 1) return picture;
    const auto scaled = [factor](int side, int most) {
        return std::clamp(static_cast<int>(std::lround(side * factor)), 1, std::max(most, 1));
    };
    const Size to{scaled(size.w, room.w), scaled(size.h, room.h)};
    AreaScaler scaler(size, to);
    const PixelRows rows{bitmap_pixels(picture.get()), picture->scanline, picture->depth / 8};
    BitmapPtr small = makeBitmap(to.w, to.h, picture->depth);
    for (int y = 0; small != nullptr && y < to.h; ++y) scaler.scaleRow(rows, {0, y}, to.w, bitmapRow(*small, y));
    return small;
}

}  // namespace host
