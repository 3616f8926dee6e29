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

/// One chunk of the file: length, type, content, checksum.
struct Chunk {
    std::span<std::uint8_t> whole;

    [[nodiscard]] std::string_view type() const { return {reinterpret_cast<const char*>(&whole[4]), 4}; }
    [[nodiscard]] std::span<std::uint8_t> content() const {
        return whole.subspan(kLengthAndType, whole.size() - kLengthAndType - kChecksum);
    }
    /// Decoders must know what begins with a capital.
    [[nodiscard]] bool isCritical() const { return whole[4] >= 'A' && whole[4] <= 'Z'; }
    [[nodiscard]] bool isWhole() const {
        return checksum(whole.subspan(4, whole.size() - 4 - kChecksum)) == bigEndian(whole.last(kChecksum));
    }
};

/// The chunk at the start of `rest`; an empty one when the file ends within it.
Chunk firstChunk(std::span<std::uint8_t> rest) {
    if (rest.size() < kLengthAndType + kChecksum) return {};
    const std::size_t length = bigEndian(rest);
    if (length > rest.size() - kLengthAndType - kChecksum) return {};
    return {rest.first(length + kLengthAndType + kChecksum)};
}

/// What the chunks seen so far amount to.
struct Content {
    std::span<const std::uint8_t> header;
    bool hasPalette = false;
    std::uint64_t packedBytes = 0;
};

/// Why such a picture cannot be read; null when nothing speaks against it.
const char* findFault(const Content& content) {
    constexpr std::uint32_t kLargestSide = std::numeric_limits<std::uint16_t>::max();
    constexpr std::size_t kHeaderBytes = 13;
    constexpr unsigned kIndexed = 3;
    // Deflate cannot pack more than 1,032 bytes into one.
    constexpr std::uint64_t kMostPacked = 1032;
    if (content.header.size() != kHeaderBytes) return "is a PNG without a header";
    const std::uint32_t width = bigEndian(content.header);
    const std::uint32_t height = bigEndian(content.header.subspan(4));
    const unsigned bits = content.header[8];
    if (width == 0 || height == 0) return "is an empty picture";
    if (width > kLargestSide || height > kLargestSide) return "is larger than 65,535 pixels in a side";
    if (std::uint64_t{width} * height > static_cast<std::uint64_t>(kMostPicturePixels)) {
        return "has more pixels than can be shown";
    }
    if (content.header[9] == kIndexed && !content.hasPalette) return "is damaged: its palette is missing";
    if (std::uint64_t{width} * bits / 8 * height > content.packedBytes * kMostPacked) {
        return "is damaged: it promises more pixels than it holds";
    }
    return nullptr;
}

}  // namespace

bool isPng(std::span<const std::uint8_t> start) {
    return start.size() >= kSignature.size() && std::equal(kSignature.begin(), kSignature.end(), start.begin());
}

std::span<std::uint8_t> reducePng(std::span<std::uint8_t> bytes, std::string& reason) {
    Content content;
    std::size_t kept = kSignature.size();
    std::size_t at = kept;
    for (bool ended = false; !ended;) {
        Chunk chunk = firstChunk(bytes.subspan(at));
        if (chunk.whole.empty()) {
            reason = "is cut off: the file ends before its pixels do";
            return {};
        }
        at += chunk.whole.size();
        if (!chunk.isCritical() && chunk.type() != "tRNS") continue;
        if (!chunk.isWhole()) {
            reason = "is damaged: a checksum does not match";
            return {};
        }
        std::memmove(&bytes[kept], chunk.whole.data(), chunk.whole.size());
        chunk.whole = bytes.subspan(kept, chunk.whole.size());
        kept += chunk.whole.size();
        if (chunk.type() == "IHDR") content.header = chunk.content();
        if (chunk.type() == "PLTE") content.hasPalette = true;
        if (chunk.type() == "IDAT") content.packedBytes += chunk.content().size();
        ended = chunk.type() == "IEND";
    }
    const char* fault = findFault(content);
    if (fault == nullptr) return bytes.first(kept);
    reason = fault;
    return {};
}

}  // namespace host
