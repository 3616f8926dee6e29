#include "platform/host/files/row_scaler.h"

#include <algorithm>
#include <cstring>

namespace host {

namespace {

/// The weights of one pixel add up to this in each direction: a 16-bit sum holds the brightest pixel, and white stays
/// white.
constexpr int kWhole = 256;

/// The weight of the first `part` of `whole`. Weights are differences of these, so rounding never adds up.
int weightOf(std::int64_t part, std::int64_t whole) { return static_cast<int>((part * kWhole + whole / 2) / whole); }

/// Bytes of a row that are looked at together, since most of a drawing is paper: 16 coloured pixels, or 48 grey ones.
constexpr int kBlock = 48;

inline bool isWhite(const std::uint8_t* bytes, std::size_t count) {
    std::uint64_t common = ~std::uint64_t{0};
    for (; count >= sizeof common; count -= sizeof common, bytes += sizeof common) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, bytes, sizeof eight);
        common &= eight;
    }
    return common == ~std::uint64_t{0} && std::all_of(bytes, bytes + count, [](int byte) { return byte == 0xFF; });
}

}  // namespace

RowScaler::RowScaler(Size from, Size to, int channels)
    : from_(from),
      to_(to),
      channels_(channels),
      stride_(static_cast<std::size_t>(to.w * channels)),
      sums_(static_cast<std::size_t>(from.w * channels)),
      whiteWeights_((sums_.size() + kBlock - 1) / kBlock),
      pixels_(stride_ * static_cast<std::size_t>(to.h)) {
    for (std::int64_t x = 0; x < to.w; ++x) {
        const std::int64_t begin = x * from.w;
        const std::int64_t end = begin + from.w;
        const int first = static_cast<int>(begin / to.w);
        const int last = static_cast<int>((end - 1) / to.w);
        const int firstBlock = first * channels / kBlock;
        const int lastBlock = (last * channels + channels - 1) / kBlock;
        taps_.push_back({first, last - first + 1, columnWeights_.size(), firstBlock, lastBlock - firstBlock + 1});
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
    // A count known to the compiler becomes a few vectors.
    const std::size_t wholeBlocks = sums_.size() / kBlock;
    for (std::size_t block = 0; block < wholeBlocks; ++block) addBlock(block, row, kBlock, weight);
    if (wholeBlocks < whiteWeights_.size()) addBlock(wholeBlocks, row, sums_.size() % kBlock, weight);
}

inline void RowScaler::addBlock(std::size_t block, const std::uint8_t* row, std::size_t count, int weight) {
    const std::uint8_t* bytes = row + block * kBlock;
    if (isWhite(bytes, count)) {
        whiteWeights_[block] += weight;
        return;
    }
    std::uint16_t* sums = &sums_[block * kBlock];
    const auto factor = static_cast<std::uint16_t>(weight);
    for (std::size_t i = 0; i < count; ++i) sums[i] = static_cast<std::uint16_t>(sums[i] + bytes[i] * factor);
}

void RowScaler::finishRow() {
    std::uint8_t* into = &pixels_[static_cast<std::size_t>(rowsDone_++) * stride_];
    for (std::size_t block = 0; block < whiteWeights_.size(); ++block) {
        const auto paper = static_cast<std::uint16_t>(0xFF * whiteWeights_[block]);
        const std::size_t end = std::min((block + 1) * kBlock, sums_.size());
        if (paper == 0) continue;
        for (std::size_t i = block * kBlock; i < end; ++i) sums_[i] = static_cast<std::uint16_t>(sums_[i] + paper);
    }
    if (channels_ == 1) {
        sumColumns<1>(into);
    } else {
        sumColumns<3>(into);
    }
    std::fill(sums_.begin(), sums_.end(), std::uint16_t{0});
    std::fill(whiteWeights_.begin(), whiteWeights_.end(), 0);
}

template <int channels>
void RowScaler::sumColumns(std::uint8_t* into) const {
    constexpr std::uint32_t kHalf = kWhole * kWhole / 2;
    constexpr std::uint32_t kWholeArea = kWhole * kWhole;
    for (const Tap& tap : taps_) {
        const auto blocks = whiteWeights_.begin() + tap.firstBlock;
        if (std::all_of(blocks, blocks + tap.blockCount, [](int white) { return white == kWhole; })) {
            into = std::fill_n(into, channels, std::uint8_t{0xFF});
            continue;
        }
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
