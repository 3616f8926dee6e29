#include "platform/host/files/bmp_header.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <span>

#include "platform/host/files/picture_file.h"

namespace host {

namespace {

constexpr std::uint32_t kCoreHeader = 12;    // BITMAPCOREHEADER, of OS/2 1.x
constexpr std::uint32_t kInfoHeader = 40;    // BITMAPINFOHEADER
constexpr std::uint32_t kOs2Header = 64;     // OS22XBITMAPHEADER, whose compressions 3 and 4 are its own
constexpr std::uint32_t kAlphaHeader = 108;  // BITMAPV4HEADER
constexpr std::uint32_t kLongestHeader = 124;
constexpr int kLargestSide = std::numeric_limits<std::uint16_t>::max();

/// Little-endian fields at offsets from the file's start.
class Fields {
public:
    explicit Fields(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    [[nodiscard]] std::uint32_t word(std::size_t at) const {
        return static_cast<std::uint32_t>(bytes_[at] | bytes_[at + 1] << 8);
    }
    [[nodiscard]] std::uint32_t longWord(std::size_t at) const { return word(at) | word(at + 2) << 16; }

private:
    std::span<const std::uint8_t> bytes_;
};

bool fitsBits(const BmpHeader& header) {
    switch (header.compression) {
        case BmpHeader::None:
            return header.bits == 1 || header.bits == 4 || header.bits == 8 || header.bits == 16 || header.bits == 24 ||
                   header.bits == 32;
        case BmpHeader::Rle8:
            return header.bits == 8;
        case BmpHeader::Rle4:
            return header.bits == 4;
        case BmpHeader::Bitfields:
            return header.bits == 16 || header.bits == 32;
    }
    return false;
}

/// Why the picture cannot be read; null when nothing speaks against it.
const char* findFault(const BmpHeader& header, std::uint64_t fileSize) {
    if (!fitsBits(header)) return "is a BMP of an unknown kind";
    if (header.width < 1 || header.height < 1) return "is an empty picture";
    if (header.width > kLargestSide || header.height > kLargestSide) return "is larger than 65,535 pixels in a side";
    if (std::int64_t{header.width} * header.height > kMostPicturePixels) return "has more pixels than can be shown";
    const auto paletteBytes = static_cast<std::uint64_t>(header.colours) * static_cast<unsigned>(header.colourBytes);
    if (header.palette + paletteBytes > header.pixels) return "is damaged: its headers contradict themselves";
    const bool packed = header.compression == BmpHeader::Rle8 || header.compression == BmpHeader::Rle4;
    const std::uint64_t stored =
        packed ? 1 : bmpRowBytes(header.width, header.bits) * static_cast<std::uint64_t>(header.height);
    if (header.pixels + stored > fileSize) return "is cut off: the file ends before its pixels do";
    return nullptr;
}

void readCore(const Fields& fields, BmpHeader& header) {
    header.width = static_cast<int>(fields.word(18));
    header.height = static_cast<int>(fields.word(20));
    header.bits = static_cast<int>(fields.word(24));
    header.colourBytes = 3;
    if (header.bits > 8) return;
    // Files of that time often leave out the unused end of the palette.
    const std::uint64_t room = header.pixels > header.palette ? (header.pixels - header.palette) / 3 : 0;
    header.colours = static_cast<int>(std::min(std::uint64_t{1} << header.bits, room));
}

/// False when a number lies beyond anything that could be meant.
bool readInfo(const Fields& fields, std::uint32_t headerSize, BmpHeader& header) {
    const auto height = static_cast<std::int32_t>(fields.longWord(22));
    const std::uint32_t compression = fields.longWord(30);
    const std::uint32_t colours = fields.longWord(46);
    if (height == std::numeric_limits<std::int32_t>::min() || compression > BmpHeader::Bitfields) return false;
    header.width = static_cast<std::int32_t>(fields.longWord(18));
    header.height = std::abs(height);
    header.topDown = height < 0;
    header.bits = static_cast<int>(fields.word(28));
    header.compression = static_cast<BmpHeader::Compression>(compression);
    if (headerSize == kOs2Header && header.compression == BmpHeader::Bitfields) return false;
    header.colourBytes = 4;
    if (header.bits > 8) return true;
    if (colours > 256) return false;
    header.colours = colours != 0 ? static_cast<int>(colours) : 1 << header.bits;
    return true;
}

void put(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

}  // namespace

std::optional<BmpHeader> readBmpHeader(const InputFile& file, std::string& reason) {
    std::array<std::uint8_t, kBmpFileHeader + kLongestHeader> start{};
    const Fields fields(start);
    const std::size_t present = std::min<std::uint64_t>(file.size(), start.size());
    const bool isRead = file.read(0, std::span(start).first(present));
    const std::uint32_t headerSize = fields.longWord(14);
    if (!isRead || present < kBmpFileHeader + std::clamp(headerSize, 4U, kLongestHeader)) {
        reason = "is cut off: the file ends within its header";
        return std::nullopt;
    }
    if (start[0] != 'B' || start[1] != 'M') {
        reason = "is no BMP";
        return std::nullopt;
    }
    BmpHeader header{};
    header.pixels = fields.longWord(10);
    header.palette = kBmpFileHeader + headerSize;
    bool known = headerSize == kCoreHeader || (headerSize >= kInfoHeader && headerSize <= kLongestHeader);
    if (headerSize == kCoreHeader) {
        readCore(fields, header);
    } else if (known) {
        known = readInfo(fields, headerSize, header);
    }
    const char* fault = known ? findFault(header, file.size()) : "is a BMP of an unknown kind";
    if (fault == nullptr) return header;
    reason = fault;
    return std::nullopt;
}

std::string makeBmpHeader(int width, int height, int bits) {
    const std::uint32_t headerSize = bits == 32 ? kAlphaHeader : kInfoHeader;
    const std::uint32_t colours = bits == 8 ? 256 : 0;
    const auto pixels = static_cast<std::uint32_t>(kBmpFileHeader) + headerSize + colours * 4;
    const auto stored = static_cast<std::uint32_t>(bmpRowBytes(width, bits) * static_cast<std::size_t>(height));
    std::string bytes = "BM";
    put(bytes, pixels + stored, 4);
    put(bytes, 0, 4);
    put(bytes, pixels, 4);
    put(bytes, headerSize, 4);
    put(bytes, static_cast<std::uint32_t>(width), 4);
    put(bytes, static_cast<std::uint32_t>(height), 4);
    put(bytes, 1, 2);  // planes
    put(bytes, static_cast<std::uint32_t>(bits), 2);
    put(bytes, bits == 32 ? BmpHeader::Bitfields : BmpHeader::None, 4);
    put(bytes, stored, 4);
    put(bytes, 0, 4);  // no physical width …
    put(bytes, 0, 4);  // … and height
    put(bytes, colours, 4);
    put(bytes, 0, 4);  // all colours matter
    if (bits == 32) {
        for (const std::uint32_t mask : {0x00FF0000U, 0x0000FF00U, 0x000000FFU, 0xFF000000U}) put(bytes, mask, 4);
        put(bytes, 0x73524742, 4);  // the colours are sRGB
        bytes.resize(kBmpFileHeader + headerSize, '\0');
    }
    for (std::uint32_t grey = 0; grey < colours; ++grey) put(bytes, grey * 0x010101, 4);
    return bytes;
}

}  // namespace host
