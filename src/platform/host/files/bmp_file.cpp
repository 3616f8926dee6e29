#include "platform/host/files/bmp_file.h"

#include <SDL.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <span>
#include <utility>

#include "platform/host/files/picture_header.h"
#include "platform/host/files/surface_record.h"
#include "platform/host/screen/framebuffer.h"
#include "platform/host/screen/surface.h"

namespace host {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kFileHeader = 14;
constexpr std::uint32_t kCoreHeader = 12;    // BITMAPCOREHEADER, of OS/2 1.x
constexpr std::uint32_t kInfoHeader = 40;    // BITMAPINFOHEADER
constexpr std::uint32_t kOs2Header = 64;     // OS22XBITMAPHEADER, whose compressions 3 and 4 are its own
constexpr std::uint32_t kAlphaHeader = 108;  // BITMAPV4HEADER
constexpr std::uint32_t kLongestHeader = 124;

// Compressions.
constexpr std::uint32_t kNone = 0;
constexpr std::uint32_t kRle8 = 1;
constexpr std::uint32_t kRle4 = 2;
constexpr std::uint32_t kBitfields = 3;

constexpr std::size_t kGreys = 256;

/// What the headers promise.
struct Header {
    std::int64_t width = 0;
    std::int64_t height = 0;
    bool topDown = false;
    unsigned bits = 0;
    std::uint32_t compression = kNone;
    std::size_t pixels = 0;   ///< offset of the first stored row
    std::size_t palette = 0;  ///< offset of the first palette entry, B, G, R, 0
    std::size_t colours = 0;  ///< entries of the palette
};

/// Bytes of a row: pixels are packed, rows are padded to four bytes.
std::size_t rowBytes(std::int64_t width, unsigned bits) {
    return (static_cast<std::size_t>(width) * bits + 31) / 32 * 4;
}

/// Little-endian fields at offsets from the file's start.
unsigned word(Bytes start, std::size_t at) { return start[at] | static_cast<unsigned>(start[at + 1]) << 8; }
std::uint32_t longWord(Bytes start, std::size_t at) { return word(start, at) | word(start, at + 2) << 16; }

bool isKnown(unsigned bits, std::uint32_t compression) {
    switch (compression) {
        case kNone:
            return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
        case kRle8:
            return bits == 8;
        case kRle4:
            return bits == 4;
        case kBitfields:
            return bits == 16 || bits == 32;
        default:
            return false;
    }
}

/// Reads the headers. Returns why the picture cannot be read; null when nothing speaks against it.
const char* readHeader(Bytes start, std::uint64_t fileSize, Header& header) {
    const std::uint32_t size = longWord(start, kFileHeader);
    if (fileSize < kFileHeader + std::clamp(size, kCoreHeader, kLongestHeader))
        return "is cut off: the file ends within its header";
    header.pixels = longWord(start, 10);
    header.palette = kFileHeader + size;
    if (size == kCoreHeader) {
        header.width = word(start, 18);
        header.height = word(start, 20);
        header.bits = word(start, 24);
    } else if (size >= kInfoHeader && size <= kLongestHeader) {
        header.width = static_cast<std::int32_t>(longWord(start, 18));
        const std::int64_t height = static_cast<std::int32_t>(longWord(start, 22));
        header.height = std::abs(height);
        header.topDown = height < 0;
        header.bits = word(start, 28);
        header.compression = longWord(start, 30);
        header.colours = header.bits > 8 ? 0 : longWord(start, 46);
        if (header.bits <= 8 && header.colours == 0) header.colours = std::size_t{1} << header.bits;
    }
    const bool ownMeaning = size == kOs2Header && header.compression == kBitfields;
    if (!isKnown(header.bits, header.compression) || ownMeaning || header.colours > kGreys)
        return "is a BMP of an unknown kind";
    if (const char* fault = findSizeFault(header.width, header.height)) return fault;
    if (header.palette + header.colours * 4 > header.pixels) return "is damaged: its headers contradict themselves";
    const bool packed = header.compression == kRle8 || header.compression == kRle4;
    const std::size_t stored =
        packed ? 1 : rowBytes(header.width, header.bits) * static_cast<std::size_t>(header.height);
    return header.pixels + stored > fileSize ? "is cut off: the file ends before its pixels do" : nullptr;
}

/// The palette that grey pictures are saved with.
std::array<std::uint8_t, kGreys * 4> greyPalette() {
    std::array<std::uint8_t, kGreys * 4> entries{};
    for (std::size_t i = 0; i < kGreys; ++i) std::fill_n(&entries[4 * i], 3, static_cast<std::uint8_t>(i));
    return entries;
}

/// True when the pixels are stored as encodeBmp does.
bool isPlain(Bytes file, const Header& header) {
    if (header.compression != kNone || header.bits != 8) return header.compression == kNone && header.bits == 24;
    return header.colours == kGreys && std::ranges::equal(file.subspan(header.palette, kGreys * 4), greyPalette());
}

/// Copies a row of pixels, colours from the order R, G, B into B, G, R or back.
void copyRow(const std::uint8_t* from, std::uint8_t* to, std::size_t width, int depth) {
    const std::size_t pixel = static_cast<std::size_t>(depth) / 8;
    const std::size_t bytes = width * pixel;
    std::size_t i = 0;
    // Two pixels of three bytes at once take little more than half the time.
    for (std::uint64_t two = 0; depth == 24 && i + sizeof two <= bytes; i += 2 * pixel) {
        std::memcpy(&two, from + i, sizeof two);
        const std::uint64_t differing = (two ^ two >> 16) & 0xFF0000FF;
        two ^= differing ^ differing << 16;
        std::memcpy(to + i, &two, sizeof two);
    }
    std::memcpy(to + i, from + i, bytes - i);
    for (; depth > 8 && i < bytes; i += pixel) std::swap(to[i], to[i + 2]);
}

}  // namespace

Picture loadBmp(std::istream& file, std::string& reason) {
    std::array<std::uint8_t, kFileHeader + kLongestHeader + kGreys * 4> start{};
    file.read(reinterpret_cast<char*>(start.data()), start.size());
    file.clear(file.rdstate() & std::ios::badbit);
    const auto fileSize = static_cast<std::uint64_t>(file.seekg(0, std::ios::end).tellg());
    Header header;
    const char* fault = readHeader(start, fileSize, header);
    reason = fault != nullptr ? fault : "is too large for a bitmap record";
    if (fault != nullptr) return {};
    if (!isPlain(start, header)) {
        constexpr int kCloseStream = 1;
        const std::vector<std::uint8_t> bytes = contentsOf(file);
        SDL_RWops* stream = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
        const SurfacePtr surface(SDL_LoadBMP_RW(stream, kCloseStream));
        if (surface != nullptr && surface->format->BitsPerPixel >= 8) return recordFrom(*surface);
        reason = std::string("is damaged: ") + SDL_GetError();
        return {};
    }
    const auto height = static_cast<int>(header.height);
    BitmapPtr bitmap = makeBitmap(static_cast<int>(header.width), height, static_cast<int>(header.bits));
    // Rows are read together, into a block that stays in the processor's cache.
    constexpr int kBlockRows = 64;
    const std::size_t stride = rowBytes(header.width, header.bits);
    std::vector<std::uint8_t> block(kBlockRows * stride);
    file.seekg(static_cast<std::streamoff>(header.pixels));
    for (int i = 0; bitmap != nullptr && i < height; ++i) {
        const std::size_t at = static_cast<std::size_t>(i % kBlockRows) * stride;
        const auto rest = static_cast<std::size_t>(height - i) * stride;
        if (at == 0)
            file.read(reinterpret_cast<char*>(block.data()),
                      static_cast<std::streamsize>(std::min(block.size(), rest)));
        copyRow(&block[at], bitmapRow(*bitmap, header.topDown ? i : height - 1 - i), bitmap->width, bitmap->depth);
    }
    if (file) return {std::move(bitmap)};
    reason = "cannot be read to its end";
    return {};
}

std::vector<std::uint8_t> encodeBmp(const bitmap_s& bitmap) {
    const unsigned bits = bitmap.depth;
    const std::uint32_t headerSize = bits == 32 ? kAlphaHeader : kInfoHeader;
    const std::size_t colours = bits == 8 ? kGreys : 0;
    const std::size_t pixels = kFileHeader + headerSize + colours * 4;
    const std::size_t stride = rowBytes(bitmap.width, bits);
    const std::size_t stored = stride * bitmap.height;
    std::vector<std::uint8_t> file = largeBlock(pixels + stored, 0);
    const auto put = [&file](std::size_t at, std::size_t value) {
        for (int i = 0; i < 4; ++i) file[at++] = static_cast<std::uint8_t>(value >> (8 * i));
    };
    put(0, 'B' | 'M' << 8);
    put(2, file.size());
    put(10, pixels);
    put(14, headerSize);
    put(18, bitmap.width);
    put(22, bitmap.height);
    put(26, 1 | bits << 16);  // planes, bits
    put(30, bits == 32 ? kBitfields : kNone);
    put(34, stored);
    put(46, colours);
    if (bits == 8) std::ranges::copy(greyPalette(), file.begin() + kFileHeader + kInfoHeader);
    if (bits == 32) {
        for (std::size_t i = 0; i < 4; ++i) put(54 + 4 * i, std::array{0xFF0000U, 0xFF00U, 0xFFU, 0xFF000000U}[i]);
        put(70, 0x73524742);  // the colours are sRGB
    }
    for (int y = 0; y < bitmap.height; ++y) {
        std::uint8_t* row = &file[pixels + stride * static_cast<std::size_t>(bitmap.height - 1 - y)];
        copyRow(bitmapRow(bitmap, y), row, bitmap.width, bitmap.depth);
    }
    return file;
}

}  // namespace host
