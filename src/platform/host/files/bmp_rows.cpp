#include "platform/host/files/bmp_rows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <vector>

namespace host {

namespace {

/// Rows travel in blocks that stay in the processor's cache on their way between file and record.
constexpr std::size_t kBlockBytes = std::size_t{256} << 10;

using Vector = std::uint8_t __attribute__((vector_size(16)));
void storeRow(const bitmap_s& bitmap, int y, std::uint8_t* stored) {
    const std::uint8_t* row = bitmapRow(bitmap, y);
    const std::size_t width = bitmap.width;
    if (bitmap.depth == 8) {
        std::memcpy(stored, row, width);
    } else if (bitmap.depth == 24) {
        swapRedAndBlue(row, stored, width);
    } else {
        for (std::size_t x = 0; x < width; ++x, row += 4, stored += 4) {
            const std::array<std::uint8_t, 4> pixel{row[2], row[1], row[0], row[3]};
            std::copy(pixel.begin(), pixel.end(), stored);
        }
    }
}

}  // namespace

void swapRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
    // Five pixels at a time: in bytes 0 to 14 of a vector every third byte comes from two places further on, from
    // where it stands, or from two places before. Byte 15 belongs to the next step, which writes it again.
    constexpr std::size_t kStep = 5;
    constexpr Vector kZero{};
    constexpr Vector kFirst{255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0};
    constexpr Vector kSecond{0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0};
    constexpr Vector kThird{0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0};
    std::size_t done = 0;
    for (; done + kStep < pixels; done += kStep) {
        Vector block;
        std::memcpy(&block, from + 3 * done, sizeof block);
        const Vector later =
            __builtin_shufflevector(block, kZero, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 16);
        const Vector earlier =
            __builtin_shufflevector(block, kZero, 16, 16, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13);
        block = (later & kFirst) | (block & kSecond) | (earlier & kThird);
        std::memcpy(to + 3 * done, &block, sizeof block);
    }
    for (; done < pixels; ++done) {
        const std::uint8_t* pixel = from + 3 * done;
        to[3 * done] = pixel[2];
        to[3 * done + 1] = pixel[1];
        to[3 * done + 2] = pixel[0];
    }
}

std::optional<PlainBmp> PlainBmp::open(const InputFile& file, const BmpHeader& header) {
    PlainBmp bmp(file, header);
    if (header.compression != BmpHeader::None) return std::nullopt;
    if (header.bits == 24) return bmp;
    if (header.bits != 8 || header.colours != static_cast<int>(bmp.greys_.size())) return std::nullopt;
    if (!bmp.readPalette()) return std::nullopt;
    return bmp;
}

bool PlainBmp::readPalette() {
    std::array<std::uint8_t, std::tuple_size_v<GreyTable> * 4> entries{};
    const auto entryBytes = static_cast<std::size_t>(header_.colourBytes);
    if (!file_.read(header_.palette, std::span(entries).first(greys_.size() * entryBytes))) return false;
    greysAreIndices_ = true;
    for (std::size_t i = 0; i < greys_.size(); ++i) {
        const std::uint8_t* entry = &entries[i * entryBytes];
        if (entry[0] != entry[1] || entry[1] != entry[2]) return false;
        greys_[i] = entry[0];
        greysAreIndices_ = greysAreIndices_ && greys_[i] == i;
    }
    return true;
}

bool PlainBmp::read(const std::function<void(int y, const std::uint8_t* stored)>& take) const {
    const std::size_t rowBytes = bmpRowBytes(header_.width, header_.bits);
    const int blockRows = static_cast<int>(std::max<std::size_t>(kBlockBytes / rowBytes, 1));
    std::vector<std::uint8_t> block(rowBytes * static_cast<std::size_t>(blockRows));
    for (int first = 0; first < header_.height; first += blockRows) {
        const int rows = std::min(blockRows, header_.height - first);
        const std::span stored(block.data(), rowBytes * static_cast<std::size_t>(rows));
        if (!file_.read(header_.pixels + rowBytes * static_cast<std::size_t>(first), stored)) return false;
        for (int i = 0; i < rows; ++i) {
            const int y = header_.topDown ? first + i : header_.height - 1 - first - i;
            take(y, &stored[rowBytes * static_cast<std::size_t>(i)]);
        }
    }
    return true;
}

void PlainBmp::convert(const std::uint8_t* stored, std::uint8_t* row, int pixels) const {
    if (header_.bits == 24) {
        swapRedAndBlue(stored, row, static_cast<std::size_t>(pixels));
    } else if (greysAreIndices_) {
        std::memcpy(row, stored, static_cast<std::size_t>(pixels));
    } else {
        std::transform(stored, stored + pixels, row, [this](std::uint8_t index) { return greys_[index]; });
    }
}

bool writeBmp(ReplacedFile& file, const bitmap_s& bitmap) {
    const std::string header = makeBmpHeader(bitmap.width, bitmap.height, bitmap.depth);
    if (!file.append({reinterpret_cast<const std::uint8_t*>(header.data()), header.size()})) return false;
    const std::size_t rowBytes = bmpRowBytes(bitmap.width, bitmap.depth);
    const int blockRows = static_cast<int>(std::max<std::size_t>(kBlockBytes / rowBytes, 1));
    std::vector<std::uint8_t> block(rowBytes * static_cast<std::size_t>(blockRows));
    for (int last = bitmap.height; last > 0; last -= blockRows) {
        const int rows = std::min(blockRows, last);
        for (int i = 0; i < rows; ++i) storeRow(bitmap, last - 1 - i, &block[rowBytes * static_cast<std::size_t>(i)]);
        if (!file.append(std::span(block).first(rowBytes * static_cast<std::size_t>(rows)))) return false;
    }
    return true;
}

}  // namespace host
