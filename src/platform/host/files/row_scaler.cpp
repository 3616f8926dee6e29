#include "platform/host/files/row_scaler.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

/// The weights of one pixel add up to this in each direction: a 16-bit sum holds the brightest pixel, and white stays
/// white.
constexpr int kWhole = 256;

/// The weight of the first `part` of `whole`. Weights are differences of these, so rounding never adds up.
int weightOf(std::int64_t part, std::int64_t whole) { return static_cast<int>((part * kWhole + whole / 2) / whole); }

bool isWhite(const std::uint8_t* row, std::size_t bytes) {
    constexpr std::size_t kBlock = 256;
    for (std::size_t start = 0; start < bytes; start += kBlock) {
        const std::size_t end = std::min(start + kBlock, bytes);
        std::uint8_t common = 0xFF;
        for (std::size_t i = start; i < end; ++i) common &= row[i];
        if (common != 0xFF) return false;
    }
    return true;
}

}  // namespace

RowScaler::RowScaler(Size from, Size to, int channels)
    : from_(from),
      to_(to),
      channels_(channels),
      stride_(static_cast<std::size_t>(to.w * channels)),
      sums_(static_cast<std::size_t>(from.w * channels)),
      pixels_(stride_ * static_cast<std::size_t>(to.h)) {
    for (std::int64_t x = 0; x < to.w; ++x) {
        const std::int64_t begin = x * from.w;
        const std::int64_t end = begin + from.w;
        const int first = static_cast<int>(begin / to.w);
        const int last = static_cast<int>((end - 1) / to.w);
        taps_.push_back({first, last - first + 1, columnWeights_.size()});
        int before = 0;
        for (int column = first; column <= last; ++column) {
            const int total = weightOf(std::min(end, (std::int64_t{column} + 1) * to.w) - begin, from.w);
            columnWeights_.push_back(static_cast<std::uint16_t>(total - before));
            before = total;
        }
    }
}

void RowScaler::add(const std::uint8_t* row) {
    reached_ += to_.h;
    if (reached_ < from_.h) {
        addWeighted(row, weightOf(reached_, from_.h) - weightSoFar_);
        weightSoFar_ = weightOf(reached_, from_.h);
        return;
    }
    addWeighted(row, kWhole - weightSoFar_);
    finishRow();
    reached_ -= from_.h;
    weightSoFar_ = weightOf(reached_, from_.h);
    addWeighted(row, weightSoFar_);
}

void RowScaler::addWeighted(const std::uint8_t* row, int weight) {
    if (weight == 0) return;
    // Most of a drawing is paper.
    if (isWhite(row, sums_.size())) {
        whiteWeight_ += weight;
        return;
    }
    std::uint16_t* sums = sums_.data();
    const std::size_t bytes = sums_.size();
    const auto factor = static_cast<std::uint16_t>(weight);
    for (std::size_t i = 0; i < bytes; ++i) sums[i] = static_cast<std::uint16_t>(sums[i] + row[i] * factor);
}

void RowScaler::finishRow() {
    std::uint8_t* into = &pixels_[static_cast<std::size_t>(rowsDone_++) * stride_];
    const int white = std::exchange(whiteWeight_, 0);
    if (white == kWhole) {
        std::fill_n(into, stride_, std::uint8_t{0xFF});
        return;
    }
    if (white > 0) {
        const auto paper = static_cast<std::uint16_t>(0xFF * white);
        for (std::uint16_t& sum : sums_) sum = static_cast<std::uint16_t>(sum + paper);
    }
    if (channels_ == 1) {
        sumColumns<1>(into);
    } else {
        sumColumns<3>(into);
    }
    std::fill(sums_.begin(), sums_.end(), std::uint16_t{0});
}

template <int channels>
void RowScaler::sumColumns(std::uint8_t* into) const {
    constexpr std::uint32_t kHalf = kWhole * kWhole / 2;
    constexpr std::uint32_t kWholeArea = kWhole * kWhole;
    for (const Tap& tap : taps_) {
        const std::uint16_t* sum = &sums_[static_cast<std::size_t>(tap.first) * channels];
        const std::uint16_t* weight = &columnWeights_[tap.weights];
        std::uint32_t total[channels];
        std::fill_n(total, channels, kHalf);
        for (int i = 0; i < tap.count; ++i) {
            for (int c = 0; c < channels; ++c) total[c] += std::uint32_t{*sum++} * weight[i];
        }
        for (const std::uint32_t value : total) *into++ = static_cast<std::uint8_t>(value / kWholeArea);
    }
}

}  // namespace host
