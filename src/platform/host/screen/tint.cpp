#include "platform/host/screen/tint.h"

#include <bit>
#include <cstddef>
#include <cstring>

#include "platform/host/screen/tone.h"

namespace host {

namespace {

/// Pixels that are looked at and blended together. Most blocks of a glyph are empty.
constexpr int kBlock = 8;
using Bytes [[gnu::vector_size(kBlock)]] = std::uint8_t;
using Words [[gnu::vector_size(2 * kBlock)]] = std::uint16_t;

/// The first of the block's bytes in the lowest bits.
using Block = std::uint64_t;
static_assert(std::endian::native == std::endian::little);

Words wordsOf(Block block) {
    Bytes bytes;
    std::memcpy(&bytes, &block, sizeof(bytes));
    return __builtin_convertvector(bytes, Words);
}

/// As `blend` in tone.h, for eight bytes at once; this division by 255 is exact for every sum of two products.
void blendEight(std::uint8_t* pixels, Words over, Words amounts) {
    Bytes under;
    std::memcpy(&under, pixels, sizeof(under));
    const Words sum = __builtin_convertvector(under, Words) * (255 - amounts) + over * amounts + 127;
    const Bytes laid = __builtin_convertvector((sum + 1 + (sum >> 8)) >> 8, Bytes);
    std::memcpy(pixels, &laid, sizeof(laid));
}

class GreyTint {
public:
    static constexpr int kChannels = 1;
    explicit GreyTint(Tone tone) : grey_(luminance(tone)), eight_(Words{} + grey_) {}

    void pixel(std::uint8_t* pixel, int amount) const { *pixel = blend(*pixel, grey_, amount); }
    void block(std::uint8_t* pixels, Block amounts) const { blendEight(pixels, eight_, wordsOf(amounts)); }

private:
    std::uint8_t grey_;
    Words eight_;
};

class RgbTint {
public:
    static constexpr int kChannels = 3;
    explicit RgbTint(Tone tone)
        : bytes_{tone.red, tone.green, tone.blue},
          first_{bytes_[0], bytes_[1], bytes_[2], bytes_[0], bytes_[1], bytes_[2], bytes_[0], bytes_[1]},
          second_{bytes_[2], bytes_[0], bytes_[1], bytes_[2], bytes_[0], bytes_[1], bytes_[2], bytes_[0]},
          third_{bytes_[1], bytes_[2], bytes_[0], bytes_[1], bytes_[2], bytes_[0], bytes_[1], bytes_[2]} {}

    void pixel(std::uint8_t* pixel, int amount) const {
        for (int i = 0; i < kChannels; ++i) pixel[i] = blend(pixel[i], bytes_[i], amount);
    }
    /// Eight pixels are three times eight bytes; each pixel's amount counts for all three of its bytes.
    void block(std::uint8_t* pixels, Block amounts) const {
        const auto thrice = [amounts](int i) { return (amounts >> 8 * i & 0xFF) * 0x010101; };
        blendEight(pixels, first_, wordsOf(thrice(0) | thrice(1) << 24 | thrice(2) << 48));
        blendEight(pixels + 8, second_, wordsOf(thrice(2) >> 16 | thrice(3) << 8 | thrice(4) << 32 | thrice(5) << 56));
        blendEight(pixels + 16, third_, wordsOf(thrice(5) >> 8 | thrice(6) << 16 | thrice(7) << 40));
    }

private:
    std::uint8_t bytes_[kChannels];
    Words first_;
    Words second_;
    Words third_;
};

template <typename Tint>
void tintRow(std::uint8_t* pixels, const std::uint8_t* amounts, int count, const Tint& tint) {
    for (; count >= kBlock; count -= kBlock, amounts += kBlock, pixels += kBlock * Tint::kChannels) {
        Block block = 0;
        std::memcpy(&block, amounts, sizeof(block));
        if (block != 0) tint.block(pixels, block);
    }
    for (int i = 0; i < count; ++i) tint.pixel(pixels + std::ptrdiff_t{i} * Tint::kChannels, amounts[i]);
}

template <typename Tint>
void tintRows(Framebuffer& buffer, Point topLeft, const Coverage& coverage, Rect area, const Tint& tint) {
    const std::ptrdiff_t left = std::ptrdiff_t{area.x} - topLeft.x;
    for (int y = area.y; y < area.bottom(); ++y) {
        const std::ptrdiff_t row = std::ptrdiff_t{y} - topLeft.y;
        tintRow(buffer.at(area.x, y), coverage.rows + row * coverage.stride + left, area.w, tint);
    }
}

}  // namespace

void tintArea(Framebuffer& buffer, Point topLeft, const Coverage& coverage, Rect area, Rgb colour) {
    const Tone tone = toneOf(colour);
    if (buffer.format() == PixelFormat::Grey8) return tintRows(buffer, topLeft, coverage, area, GreyTint(tone));
    tintRows(buffer, topLeft, coverage, area, RgbTint(tone));
}

}  // namespace host
