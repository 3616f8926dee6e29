#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/host/files/input_file.h"

namespace host {

inline constexpr std::size_t kBmpFileHeader = 14;
/// Bytes of a BMP row: pixels are packed, rows are padded to four bytes.
[[nodiscard]] constexpr std::size_t bmpRowBytes(int width, int bits) {
    return (static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
}

/// What a BMP's headers promise, checked.
struct BmpHeader {
    enum Compression : std::uint32_t { None = 0, Rle8 = 1, Rle4 = 2, Bitfields = 3 };

    int width;
    int height;
    bool topDown;
    int bits;
    Compression compression;
    std::uint64_t pixels;   ///< offset of the first stored row
    std::uint64_t palette;  ///< offset of the first palette entry
    int colours;            ///< entries of the palette
    int colourBytes;        ///< of one entry, B, G, R first
};

/// Reads and checks the headers. Nothing, with the reason in `reason`, when they contradict themselves, are too large,
/// or promise more than the file holds.
[[nodiscard]] std::optional<BmpHeader> readBmpHeader(const InputFile& file, std::string& reason);

/// The headers of a bottom-up picture of 8 (grey, with its palette), 24 or 32 (with alpha) bits.
[[nodiscard]] std::string makeBmpHeader(int width, int height, int bits);

}  // namespace host
