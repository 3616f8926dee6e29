#include "platform/host/screen/framebuffer.h"

#include <png.h>
#include <sys/mman.h>

#include <memory>

namespace host {

Framebuffer::Framebuffer(Size size, PixelFormat format)
    : size_(size),
      format_(format),
      stride_(static_cast<std::size_t>(size.w) * (format == PixelFormat::Grey8 ? 1 : 3)),
      pixels_(largeBlock(stride_ * static_cast<std::size_t>(size.h), 0xFF)) {}

bool Framebuffer::operator==(const Framebuffer& other) const {
    return size_ == other.size_ && format_ == other.format_ && pixels_ == other.pixels_;
}

bool writePng(const std::filesystem::path& file, const Framebuffer& pixels, std::string& error) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(pixels.size().w);
    image.height = static_cast<png_uint_32>(pixels.size().h);
    image.format = pixels.format() == PixelFormat::Grey8 ? PNG_FORMAT_GRAY : PNG_FORMAT_RGB;
    if (png_image_write_to_file(&image, file.c_str(), 0, pixels.at(0, 0), 0, nullptr) != 0) return true;
    error = file.string() + ": cannot be written: " + image.message;
    return false;
}

void preferHugePages(void* block, std::size_t bytes) {
    constexpr std::size_t kHugePage = std::size_t{2} << 20;
    if (std::align(kHugePage, kHugePage, block, bytes) == nullptr) return;
    // A kernel without huge pages refuses, and nothing is lost.
    madvise(block, bytes / kHugePage * kHugePage, MADV_HUGEPAGE);
}

std::vector<std::uint8_t> largeBlock(std::size_t bytes, std::uint8_t value) {
    std::vector<std::uint8_t> block;
    block.reserve(bytes);
    preferHugePages(block.data(), bytes);
    block.resize(bytes, value);
    return block;
}

}  // namespace host
