#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/host/base/geometry.h"
#include "platform/host/files/bmp_header.h"
#include "platform/host/files/input_file.h"
#include "platform/host/files/replaced_file.h"
#include "platform/host/screen/bitmap_record.h"

namespace host {

/// Copies pixels of three bytes each with the first and the third exchanged: R, G, B to B, G, R and back. The
/// blocks do not overlap.
void swapRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

/// A BMP of the two kinds that pictures are saved as, uncompressed with 24 bits or with 8 bits and a palette of 256
/// greys, read row by row. Borrows its file.
class PlainBmp {
public:
    /// Nothing when the BMP is of another kind, or its palette has colours or cannot be read.
    [[nodiscard]] static std::optional<PlainBmp> open(const InputFile& file, const BmpHeader& header);

    [[nodiscard]] Size size() const { return {header_.width, header_.height}; }
    [[nodiscard]] int depth() const { return header_.bits; }

    /// Gives out every row as it is stored, with its place in the picture; they come from the top or from the bottom.
    /// False when the file cannot be read to its end.
    [[nodiscard]] bool read(const std::function<void(int y, const std::uint8_t* stored)>& take) const;

    /// Brings that many stored pixels into the form of a record's.
    void convert(const std::uint8_t* stored, std::uint8_t* row, int pixels) const;

private:
    using GreyTable = std::array<std::uint8_t, 256>;
    PlainBmp(const InputFile& file, const BmpHeader& header) : file_(file), header_(header) {}
    bool readPalette();

    const InputFile& file_;
    BmpHeader header_;
    GreyTable greys_{};
    bool greysAreIndices_ = false;
};

/// Writes headers and rows of a picture of depth 8, 24 or 32. False when the file has failed.
bool writeBmp(ReplacedFile& file, const bitmap_s& bitmap);

}  // namespace host
