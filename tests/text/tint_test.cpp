#include "platform/host/screen/tint.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "platform/host/screen/tone.h"

namespace host {
namespace {

/// Random pixels, amounts and colours, at all offsets and widths around whole blocks of pixels.
TEST(Tint, EqualsTheBlendOfEachPixel) {
    constexpr int kWidth = 40;
    std::mt19937 random(3);
    for (const PixelFormat format : {PixelFormat::Grey8, PixelFormat::Rgb24}) {
        for (int round = 0; round < 2000; ++round) {
            Framebuffer tinted({kWidth, 1}, format);
            std::array<std::uint8_t, kWidth> amounts{};
            for (std::size_t i = 0; i < tinted.stride(); ++i)
                *(tinted.at(0, 0) + i) = static_cast<std::uint8_t>(random());
            for (auto& amount : amounts) amount = random() % 2 == 0 ? 0 : static_cast<std::uint8_t>(random());
            Framebuffer expected = tinted;
            const int left = static_cast<int>(random() % 20);
            const int width = static_cast<int>(random() % 20) + 1;
            const Tone tone{static_cast<std::uint8_t>(random()), static_cast<std::uint8_t>(random()),
                            static_cast<std::uint8_t>(random())};
            const std::uint8_t grey = luminance(tone);
            const std::array<std::uint8_t, 3> bytes{format == PixelFormat::Grey8 ? grey : tone.red, tone.green,
                                                    tone.blue};
            for (int x = left; x < left + width; ++x) {
                for (int i = 0; i < expected.bytesPerPixel(); ++i) {
                    std::uint8_t& byte = *(expected.at(x, 0) + i);
                    byte = blend(byte, bytes[static_cast<std::size_t>(i)], amounts[static_cast<std::size_t>(x)]);
                }
            }
            const Coverage coverage{amounts.data(), kWidth, {kWidth, 1}};
            tintArea(tinted, {0, 0}, coverage, {left, 0, width, 1}, tone.red << 16 | tone.green << 8 | tone.blue);
            ASSERT_EQ(tinted, expected) << left << " + " << width;
        }
    }
}

}  // namespace
}  // namespace host
