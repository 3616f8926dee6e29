#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/host/base/geometry.h"

namespace host {

/// One byte of grey a pixel, or three bytes R, G, B. White is bytes of 0xFF in both.
enum class PixelFormat { Grey8, Rgb24 };

/// A block of pixels, rows packed, white at first.
class Framebuffer {
public:
    Framebuffer(Size size, PixelFormat format);

    [[nodiscard]] Size size() const { return size_; }
    [[nodiscard]] Rect bounds() const { return {0, 0, size_.w, size_.h}; }
    [[nodiscard]] PixelFormat format() const { return format_; }
    [[nodiscard]] int bytesPerPixel() const { return format_ == PixelFormat::Grey8 ? 1 : 3; }
    /// Bytes from one row to the next.
    [[nodiscard]] std::size_t stride() const { return stride_; }

    /// First byte of pixel (x, y), which lies inside.
    [[nodiscard]] std::uint8_t* at(int x, int y) { return pixels_.data() + offset(x, y); }
    [[nodiscard]] const std::uint8_t* at(int x, int y) const { return pixels_.data() + offset(x, y); }

    bool operator==(const Framebuffer&) const;

private:
    [[nodiscard]] std::size_t offset(int x, int y) const {
        return static_cast<std::size_t>(y) * stride_ +
               static_cast<std::size_t>(x) * static_cast<std::size_t>(bytesPerPixel());
    }

    Size size_;
    PixelFormat format_;
    std::size_t stride_;
    std::vector<std::uint8_t> pixels_;
};

/// Writes the pixels as a PNG file. False, with one line that names file and reason in `error`, when that fails.
[[nodiscard]] bool writePng(const std::filesystem::path& file, const Framebuffer& pixels, std::string& error);

/// Asks the kernel for huge pages inside a block that is about to be written; the block's ends that fill none stay
/// as they are, so it takes no more memory. Ordinary pages, two thousand to a screen, cost more to get than to fill.
void preferHugePages(void* block, std::size_t bytes);

/// So many bytes of that value, in huge pages.
[[nodiscard]] std::vector<std::uint8_t> largeBlock(std::size_t bytes, std::uint8_t value);

}  // namespace host
