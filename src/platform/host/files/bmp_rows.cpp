#include "platform/host/files/bmp_rows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

namespace host {

namespace {

/// Rows travel in blocks that stay in the processor's cache on their way between file and record.
constexpr std::size_t kBlockBytes = std::size_t{256} << 10;

using Vector = std::uint8_t __attribute__((vector_size(16)));
constexpr std::size_t kColours = 256;
using GreyTable = std::array<std::uint8_t, kColours>;

std::optional<GreyTable> readGreyPalette(const InputFile& file, const BmpHeader& header) {
    std::array<std::uint8_t, kColours * 4> entries{};
    const auto entryBytes = static_cast<std::size_t>(header.colourBytes);
    if (!file.read(header.palette, std::span(entries).first(kColours * entryBytes))) return std::nullopt;
    GreyTable greys{};
    for (std::size_t i = 0; i < greys.size(); ++i) {
        const std::uint8_t* entry = &entries[i * entryBytes];
        if (entry[0] != entry[1] || entry[1] != entry[2]) return std::nullopt;
        greys[i] = entry[0];
    }
    return greys;
}

bool isIdentity(const GreyTable& greys) {
    for (std::size_t i = 0; i < greys.size(); ++i) {
        if (greys[i] != i) return false;
    }
    return true;
}

/// Brings one stored row into the record's form.
class RowReader {
public:
    /// `greys` is null for 24 bits.
    RowReader(int width, const GreyTable* greys)
        : width_(static_cast<std::size_t>(width)), greys_(greys), asStored_(greys != nullptr && isIdentity(*greys)) {}

    void convert(const std::uint8_t* stored, std::uint8_t* row) const {
        if (greys_ == nullptr) {
            swapRedAndBlue(stored, row, width_);
        } else if (asStored_) {
            std::memcpy(row, stored, width_);
        } else {
            std::transform(stored, stored + width_, row, [this](std::uint8_t index) { return (*greys_)[index]; });
        }
    }

private:
    std::size_t width_;
    const GreyTable* greys_;
    bool asStored_;
};

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

bool isPlainBmp(const BmpHeader& header) {
    return header.compression == BmpHeader::None && (header.bits == 24 || (header.bits == 8 && header.colours == 256));
}

BitmapPtr readBmpRows(const InputFile& file, const BmpHeader& header, std::string& reason) {
    std::optional<GreyTable> greys;
    if (header.bits == 8 && !(greys = readGreyPalette(file, header))) return nullptr;
    BitmapPtr bitmap = makeBitmap(header.width, header.height, header.bits);
    if (bitmap == nullptr) {
        reason = "is too large for a bitmap record";
        return nullptr;
    }
    const RowReader reader(header.width, greys ? &*greys : nullptr);
    const std::size_t rowBytes = bmpRowBytes(header.width, header.bits);
    const int blockRows = static_cast<int>(std::max<std::size_t>(kBlockBytes / rowBytes, 1));
    std::vector<std::uint8_t> block(rowBytes * static_cast<std::size_t>(blockRows));
    for (int first = 0; first < header.height; first += blockRows) {
        const int rows = std::min(blockRows, header.height - first);
        const std::span stored(block.data(), rowBytes * static_cast<std::size_t>(rows));
        if (!file.read(header.pixels + rowBytes * static_cast<std::size_t>(first), stored)) {
            reason = "cannot be read to its end";
            return nullptr;
        }
        for (int i = 0; i < rows; ++i) {
            const int y = header.topDown ? first + i : header.height - 1 - first - i;
            reader.convert(&stored[rowBytes * static_cast<std::size_t>(i)], bitmapRow(*bitmap, y));
        }
    }
    return bitmap;
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
