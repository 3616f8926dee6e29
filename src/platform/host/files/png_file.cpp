#include "platform/host/files/png_file.h"

#include <png.h>

#include <csetjmp>
#include <string_view>

#include "platform/host/files/picture_header.h"
#include "platform/host/screen/paint.h"

namespace host {

namespace {

void readBytes(png_structp png, png_bytep into, std::size_t count) {
    auto& file = *static_cast<std::istream*>(png_get_io_ptr(png));
    if (!file.read(reinterpret_cast<char*>(into), static_cast<std::streamsize>(count)))
        png_error(png, "the file ends before its pixels do");
}

[[noreturn]] void fail(png_structp png, png_const_charp message) {
    *static_cast<std::string*>(png_get_error_ptr(png)) = std::string("is damaged: ") + message;
    png_longjmp(png, 1);
}

/// Of what is not the pixels themselves only transparency changes how they look.
void hear(png_structp png, png_const_charp warning) {
    if (std::string_view(warning).starts_with("tRNS")) png_error(png, warning);
}

/// A picture on its way out of a file. The library jumps out of what it does at a fault, so what it fills lives here.
/// Its simpler interface would do without, but garbles interlaced pictures of 16 bits and follows gamma.
struct Reading {
    Reading(std::istream& from, std::string& why)
        : file(from), reason(why), png(png_create_read_struct(PNG_LIBPNG_VER_STRING, &why, fail, hear)) {}
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() { png_destroy_read_struct(&png, &info, nullptr); }

    std::istream& file;
    std::string& reason;
    png_structp png;
    png_infop info = nullptr;
    int width = 0;
    int height = 0;
    Picture picture;                  ///< of pixels that the file holds as a record does
    std::vector<std::uint8_t> mixed;  ///< R, G, B, alpha, of others
};

/// Why such a picture cannot be read; null when nothing speaks against it.
const char* findFault(const Reading& reading) {
    constexpr std::uint64_t kMostUnpacked = 1032;  // bytes that deflate can pack into one
    if (const char* fault = findSizeFault(reading.width, reading.height)) return fault;
    const auto start = reading.file.tellg();
    const auto rest = static_cast<std::uint64_t>(reading.file.seekg(0, std::ios::end).tellg() - start);
    reading.file.seekg(start);
    const std::uint64_t promised = png_get_rowbytes(reading.png, reading.info) * static_cast<unsigned>(reading.height);
    return promised > rest * kMostUnpacked ? "is damaged: it promises more pixels than it holds" : nullptr;
}

/// Asks for pixels as a record has them, or of four bytes, and returns where they go.
std::uint8_t* makeRoom(Reading& reading) {
    png_structp png = reading.png;
    const int type = png_get_color_type(png, reading.info);
    const bool opaque = png_get_valid(png, reading.info, PNG_INFO_tRNS) == 0;
    reading.picture.whole = png_get_bit_depth(png, reading.info) <= 8;
    png_set_expand(png);
    png_set_strip_16(png);
    if (opaque && (type == PNG_COLOR_TYPE_GRAY || type == PNG_COLOR_TYPE_RGB)) {
        reading.picture.bitmap = makeBitmap(reading.width, reading.height, type == PNG_COLOR_TYPE_GRAY ? 8 : 24);
        return reading.picture.bitmap == nullptr ? nullptr : bitmap_pixels(reading.picture.bitmap.get());
    }
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    reading.mixed.resize(static_cast<std::size_t>(reading.width) * static_cast<std::size_t>(reading.height) * 4);
    return reading.mixed.data();
}

bool read(Reading& reading) {
    png_structp png = reading.png;
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    reading.info = png_create_info_struct(png);
    png_set_read_fn(png, &reading.file, readBytes);
    // Nothing counts but pixels: a damaged colour profile or an endless comment must not cost the picture.
    constexpr int kAllOthers = -1;
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, kAllOthers);
    png_read_info(png, reading.info);
    reading.width = static_cast<int>(png_get_image_width(png, reading.info));
    reading.height = static_cast<int>(png_get_image_height(png, reading.info));
    const char* fault = findFault(reading);
    std::uint8_t* first = fault == nullptr ? makeRoom(reading) : nullptr;
    reading.reason = fault != nullptr ? fault : "is too large for a bitmap record";
    if (first == nullptr) return false;

    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, reading.info);
    const std::size_t stride = png_get_rowbytes(png, reading.info);
    for (int pass = 0; pass < passes; ++pass)
        for (int y = 0; y < reading.height; ++y)
            png_read_row(png, first + static_cast<std::size_t>(y) * stride, nullptr);
    png_read_end(png, nullptr);
    return true;
}

/// Brings R, G, B, alpha into a record of depth 8 when all pixels are grey, else 24.
void layOnWhite(Reading& reading) {
    const std::vector<std::uint8_t>& rgba = reading.mixed;
    Picture& picture = reading.picture;
    bool grey = true;
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        grey = grey && rgba[i] == rgba[i + 1] && rgba[i] == rgba[i + 2];
        picture.whole = picture.whole && rgba[i + 3] == 0xFF;
    }
    picture.bitmap = makeBitmap(reading.width, reading.height, grey ? 8 : 24);
    if (picture.bitmap == nullptr) return;
    std::uint8_t* to = bitmap_pixels(picture.bitmap.get());
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        const std::uint8_t* pixel = &rgba[i];
        for (int channel = 0; channel < picture.bitmap->depth / 8; ++channel)
            *to++ = blend(0xFF, pixel[channel], pixel[3]);
    }
}

}  // namespace

Picture loadPng(std::istream& file, std::string& reason) {
    reason = "there is not enough memory to read it";
    Reading reading(file, reason);
    if (reading.png == nullptr || !read(reading)) return {};
    if (!reading.mixed.empty()) layOnWhite(reading);
    return std::move(reading.picture);
}

std::vector<std::uint8_t> encodePng(const bitmap_s& bitmap, std::string& reason) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = bitmap.width;
    image.height = bitmap.height;
    image.format = bitmap.depth == 8 ? PNG_FORMAT_GRAY : bitmap.depth == 24 ? PNG_FORMAT_RGB : PNG_FORMAT_RGBA;
    image.flags = PNG_IMAGE_FLAG_FAST;  // a third of the time, and drawings grow by a tenth
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::uint8_t> file(size);
    const bool written =
        png_image_write_to_memory(&image, file.data(), &size, 0, bitmap_pixels(&bitmap), bitmap.scanline, nullptr) != 0;
    if (!written) reason = image.message;
    file.resize(written ? size : 0);
    return file;
}

}  // namespace host
