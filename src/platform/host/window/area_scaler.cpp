#include "platform/host/window/area_scaler.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

// The weights of one pixel add up to this, so a 16-bit sum holds the brightest pixel and white stays white.
constexpr int kWhole = 256;

// Pixels that are scaled at once: short enough to find the white between the lines of a drawing.
constexpr int kSpan = 64;

std::uint32_t grey(std::uint32_t shade) { return shade * 0x010101U; }

std::uint32_t rgb(std::uint32_t r, std::uint32_t g, std::uint32_t b) { return r << 16U | g << 8U | b; }

std::uint32_t* rowOf(PixelRows rows, int y) {
    // The rows of a surface are aligned for its pixels.
    return reinterpret_cast<std::uint32_t*>(rows.pixels + static_cast<std::size_t>(y) * rows.pitch);
}

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
    : same_(from == to), columns_(from.w, to.w), rows_(from.h, to.h), sums_(static_cast<std::size_t>(from.w) * 3) {}

void AreaScaler::scale(const Framebuffer& picture, Rect area, PixelRows into) {
    if (same_) {
        copy(picture, area, into);
        return;
    }
    for (int y = 0; y < area.h; ++y) {
        for (int x = 0; x < area.w; x += kSpan)
            scaleSpan(picture, area.y + y, area.x + x, std::min(kSpan, area.w - x), rowOf(into, y) + x);
    }
}

void AreaScaler::scaleSpan(const Framebuffer& picture, int row, int column, int width, std::uint32_t* into) {
    const int left = columns_.first[static_cast<std::size_t>(column)];
    const int right = columns_.first[static_cast<std::size_t>(column + width - 1)] + columns_.taps;
    const int bytes = (right - left) * picture.bytesPerPixel();
    if (isWhite(picture, row, left, bytes)) {
        std::fill_n(into, width, grey(0xFF));
        return;
    }
    sumRows(picture, row, left, bytes);
    if (picture.format() == PixelFormat::Grey8) {
        sumColumns<1>(column, width, into);
    } else {
        sumColumns<3>(column, width, into);
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

// Paper is white nearly everywhere; looking costs a small part of scaling.
bool AreaScaler::isWhite(const Framebuffer& picture, int row, int firstColumn, int bytes) const {
    unsigned common = 0xFF;
    for (int i = 0; i < rows_.taps; ++i) {
        const std::uint8_t* pixels = picture.at(firstColumn, rows_.first[static_cast<std::size_t>(row)] + i);
        for (int x = 0; x < bytes; ++x) common &= pixels[x];
    }
    return common == 0xFF;
}

void AreaScaler::sumRows(const Framebuffer& picture, int row, int firstColumn, int bytes) {
    const std::uint16_t* weights = rows_.weightsOf(row);
    std::fill_n(sums_.begin(), bytes, std::uint16_t{0});
    for (int i = 0; i < rows_.taps; ++i) {
        const std::uint16_t weight = weights[i];
        if (weight == 0) continue;
        const std::uint8_t* pixels = picture.at(firstColumn, rows_.first[static_cast<std::size_t>(row)] + i);
        std::uint16_t* sums = sums_.data();
        for (int x = 0; x < bytes; ++x) sums[x] = static_cast<std::uint16_t>(sums[x] + pixels[x] * weight);
    }
}

template <int kChannels>
void AreaScaler::sumColumns(int column, int width, std::uint32_t* into) const {
    constexpr std::uint32_t kHalf = kWhole * kWhole / 2;
    constexpr unsigned kShift = 16;  // kWhole in each direction
    const int* first = columns_.first.data() + column;
    const std::uint16_t* weight = columns_.weightsOf(column);
    for (int x = 0; x < width; ++x) {
        const std::uint16_t* sum = sums_.data() + std::ptrdiff_t{first[x] - first[0]} * kChannels;
        std::array<std::uint32_t, 3> total = {kHalf, kHalf, kHalf};
        for (int i = 0; i < columns_.taps; ++i, ++weight) {
            for (std::size_t c = 0; c < kChannels; ++c) total[c] += std::uint32_t{*sum++} * *weight;
        }
        into[x] =
            kChannels == 1 ? grey(total[0] >> kShift) : rgb(total[0] >> kShift, total[1] >> kShift, total[2] >> kShift);
    }
}

}  // namespace host
