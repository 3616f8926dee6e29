#include "platform/host/screen/framebuffer.h"

#include "platform/host/screen/huge_pages.h"

namespace host {

Framebuffer::Framebuffer(Size size, PixelFormat format)
    : size_(size), format_(format), stride_(static_cast<std::size_t>(size.w) * (format == PixelFormat::Grey8 ? 1 : 3)) {
    const std::size_t bytes = stride_ * static_cast<std::size_t>(size.h);
    pixels_.reserve(bytes);
    preferHugePages(pixels_.data(), bytes);
    pixels_.assign(bytes, 0xFF);
}

bool Framebuffer::operator==(const Framebuffer& other) const {
    return size_ == other.size_ && format_ == other.format_ && pixels_ == other.pixels_;
}

}  // namespace host
