#include "platform/host/files/png_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

#include "platform/host/files/picture_file.h"

namespace host {

namespace {

constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t kLengthAndType = 8;
constexpr std::size_t kChecksum = 4;

constexpr std::array<std::uint32_t, 256> makeChecksumTable() {
    constexpr std::uint32_t kPolynomial = 0xEDB88320;
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1) != 0 ? value >> 1 ^ kPolynomial : value >> 1;
        table[i] = value;
    }
    return table;
}

std::uint32_t checksum(std::span<const std::uint8_t> bytes) {
    static constexpr auto kTable = makeChecksumTable();
    std::uint32_t value = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) value = kTable[(value ^ byte) & 0xFF] ^ value >> 8;
    return ~value;
}

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

/// Why a picture with this IHDR cannot be read; null when nothing speaks against it.
const char* findFault(std::span<const std::uint8_t> content, std::uint64_t packedBytes) {
    constexpr std::uint32_t kLargestSide = std::numeric_limits<std::uint16_t>::max();
    constexpr std::size_t kContentBytes = 13;
    // Deflate cannot pack more than 1,032 bytes into one.
    constexpr std::uint64_t kMostPacked = 1032;
    if (content.size() != kContentBytes) return "is a PNG without a header";
    const std::uint32_t width = bigEndian(content);
    const std::uint32_t height = bigEndian(content.subspan(4));
    const unsigned bits = content[8];
    if (width == 0 || height == 0) return "is an empty picture";
    if (width > kLargestSide || height > kLargestSide) return "is larger than 65,535 pixels in a side";
    if (std::uint64_t{width} * height > static_cast<std::uint64_t>(kMostPicturePixels)) {
        return "has more pixels than can be shown";
    }
    if (std::uint64_t{width} * bits / 8 * height > packedBytes * kMostPacked) {
        return "is damaged: it promises more pixels than it holds";
    }
    return nullptr;
}

}  // namespace

bool isPng(std::span<const std::uint8_t> start) {
    return start.size() >= kSignature.size() && std::equal(kSignature.begin(), kSignature.end(), start.begin());
}

std::span<std::uint8_t> reducePng(std::span<std::uint8_t> bytes, std::string& reason) {
    using namespace std::string_view_literals;
    std::span<const std::uint8_t> header;
    std::uint64_t packedBytes = 0;
    std::size_t kept = kSignature.size();
    std::span<std::uint8_t> rest = bytes.subspan(kept);
    while (rest.size() >= kLengthAndType + kChecksum) {
        const std::size_t length = bigEndian(rest);
        if (length > rest.size() - kLengthAndType - kChecksum) break;
        const std::size_t whole = length + kLengthAndType + kChecksum;
        const std::string_view type(reinterpret_cast<const char*>(&rest[4]), 4);
        const bool shows = type == "IHDR"sv || type == "PLTE"sv || type == "tRNS"sv || type == "IDAT"sv;
        const bool ends = type == "IEND"sv;
        if (shows || ends) {
            if (checksum(rest.subspan(4, length + 4)) != bigEndian(rest.subspan(kLengthAndType + length))) {
                reason = "is damaged: a checksum does not match";
                return {};
            }
            if (type == "IDAT"sv) packedBytes += length;
            const bool isHeader = type == "IHDR"sv;
            std::memmove(&bytes[kept], rest.data(), whole);
            if (isHeader) header = bytes.subspan(kept + kLengthAndType, length);
            kept += whole;
        }
        if (ends) {
            const char* fault = findFault(header, packedBytes);
            if (fault == nullptr) return bytes.first(kept);
            reason = fault;
            return {};
        }
        rest = rest.subspan(whole);
    }
    reason = "is cut off: the file ends before its pixels do";
    return {};
}

}  // namespace host
