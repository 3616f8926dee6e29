#include "platform/host/screen/paint.h"

#include <cstring>

namespace host {

Paint::Paint(Rgb colour, PixelFormat format) : channels_(format == PixelFormat::Grey8 ? 1 : 3) {
    const Tone tone = toneOf(colour);
    bytes_[0] = channels_ == 1 ? luminance(tone) : tone.red;
    bytes_[1] = tone.green;
    bytes_[2] = tone.blue;
    uniform_ = channels_ == 1 || tone.grey();
}

void Paint::fill(std::uint8_t* pixels, int count) const {
    if (uniform_) {
        std::memset(pixels, bytes_[0], static_cast<std::size_t>(count) * static_cast<std::size_t>(channels_));
        return;
    }
    for (int i = 0; i < count; ++i) std::memcpy(pixels + std::ptrdiff_t{3} * i, bytes_, 3);
}

void Paint::blend(std::uint8_t* pixel, int amount) const {
    for (int channel = 0; channel < channels_; ++channel) {
        pixel[channel] = host::blend(pixel[channel], bytes_[channel], amount);
    }
}

void Paint::blend(std::uint8_t* pixels, const std::uint8_t* amounts, int count) const {
    for (int i = 0; i < count; ++i)
        if (amounts[i] != 0) blend(pixels + std::ptrdiff_t{i} * channels_, amounts[i]);
}

void fillArea(Framebuffer& buffer, Rect area, Rgb colour) {
    const Rect inside = area.intersected(buffer.bounds());
    if (inside.empty()) return;
    std::uint8_t* first = buffer.at(inside.x, inside.y);
    const Paint paint(colour, buffer.format());
    paint.fill(first, inside.w);
    const auto bytes = static_cast<std::size_t>(inside.w) * static_cast<std::size_t>(buffer.bytesPerPixel());
    for (int y = inside.y + 1; y < inside.bottom(); ++y) {
        std::uint8_t* row = buffer.at(inside.x, y);
        // Setting bytes is twice as quick as copying them.
        if (paint.uniform()) {
            paint.fill(row, inside.w);
        } else {
            std::memcpy(row, first, bytes);
        }
    }
}

}  // namespace host
