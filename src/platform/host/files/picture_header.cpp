#include "platform/host/files/picture_header.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

#include "platform/host/files/picture_file.h"

namespace host {

namespace {

using Bytes = std::span<const std::uint8_t>;
using std::string_view_literals::operator""sv;

constexpr const char* kCut = "is cut off: the file ends before its pixels do";
constexpr const char* kContradiction = "is damaged: its headers contradict themselves";

enum class Order { LittleEndian, BigEndian };

/// The numbers in a file; those beyond its end are zero.
class Fields {
public:
    Fields(Bytes bytes, Order order) : bytes_(bytes), order_(order) {}

    [[nodiscard]] std::uint32_t number(std::size_t at, std::size_t count) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t place = at + (order_ == Order::BigEndian ? i : count - 1 - i);
            value = value << 8 | (place < bytes_.size() ? bytes_[place] : 0U);
        }
        return value;
    }

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

    [[nodiscard]] bool says(std::size_t at, std::string_view text) const {
        return at <= bytes_.size() && bytes_.size() - at >= text.size() &&
               std::equal(text.begin(), text.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(at),
                          [](char c, std::uint8_t byte) { return static_cast<std::uint8_t>(c) == byte; });
    }

private:
    Bytes bytes_;
    Order order_;
};

/// The first directory of a TIFF file, which is also the form of a photograph's EXIF notes.
class TiffDirectory {
public:
    explicit TiffDirectory(Bytes file)
        : fields_(file, file.empty() || file[0] == 'M' ? Order::BigEndian : Order::LittleEndian),
          start_(fields_.number(4, 4)) {}

    /// A number's value, `fallback` where it is missing. Of an entry given twice the largest counts, so that none hides
    /// a size from us that the decoder sees; a number in an unusual form counts as very large.
    [[nodiscard]] std::uint32_t value(unsigned tag, std::uint32_t fallback) const {
        constexpr unsigned kShort = 3;
        constexpr unsigned kLong = 4;
        std::uint32_t largest = 0;
        bool found = false;
        std::size_t at = start_ + 2;
        for (std::uint32_t rest = fields_.number(start_, 2); rest > 0 && at < fields_.size(); --rest, at += 12) {
            if (fields_.number(at, 2) != tag) continue;
            const std::uint32_t type = fields_.number(at + 2, 2);
            const bool usual = type == kShort || type == kLong;
            largest = std::max(largest, usual ? fields_.number(at + 8, type == kShort ? 2 : 4) : UINT32_MAX);
            found = true;
        }
        return found ? largest : fallback;
    }

private:
    Fields fields_;
    std::size_t start_;
};

const char* readTiff(Bytes file, PictureHeader& header) {
    constexpr unsigned kWidth = 256;
    constexpr unsigned kHeight = 257;
    constexpr unsigned kChannels = 277;
    constexpr unsigned kTileWidth = 322;
    constexpr unsigned kTileHeight = 323;
    constexpr unsigned kMostChannels = 5;  // four inks and alpha
    const TiffDirectory directory(file);
    header.width = directory.value(kWidth, 0);
    header.height = directory.value(kHeight, 0);
    if (directory.value(kChannels, 1) > kMostChannels) return kContradiction;
    // A tile may be larger than the picture, but never by much.
    return findSizeFault(directory.value(kTileWidth, 1), directory.value(kTileHeight, 1));
}

const char* readJpeg(Bytes file, PictureHeader& header) {
    constexpr unsigned kApplication1 = 0xE1;
    constexpr unsigned kScan = 0xDA;
    constexpr unsigned kOrientation = 274;
    constexpr std::string_view kExif = "Exif\0\0"sv;
    const Fields fields(file, Order::BigEndian);
    for (std::size_t at = 2; at + 4 <= file.size();) {
        const unsigned marker = file[at + 1];
        const std::size_t length = fields.number(at + 2, 2);
        if (file[at] != 0xFF || (marker != 0xFF && length < 2)) return kContradiction;
        if (marker == 0xFF) {  // one of the bytes that may fill the space between two segments
            ++at;
            continue;
        }
        // C4, C8 and CC are tables among the sixteen kinds of frame.
        if (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC) {
            header.height = fields.number(at + 5, 2);
            header.width = fields.number(at + 7, 2);
            if (fields.number(at + 9, 1) > 3) return "is made for print: its four inks are not read";
        }
        if (marker == kApplication1 && length > 8 && fields.says(at + 4, kExif) && at + 2 + length <= file.size())
            header.orientation = TiffDirectory(file.subspan(at + 10, length - 8)).value(kOrientation, 1);
        if (marker == kScan) {
            // Zeros stand after each FF of the pixels, so the mark of the end is none of them.
            const std::string_view pixels(reinterpret_cast<const char*>(file.data()) + at, file.size() - at);
            return pixels.find("\xFF\xD9") == std::string_view::npos ? kCut : nullptr;
        }
        at += 2 + length;
    }
    return kCut;
}

const char* readWebp(Bytes file, PictureHeader& header) {
    const Fields fields(file, Order::LittleEndian);
    constexpr std::uint32_t kSide = 0x3FFF;
    if (fields.says(12, "VP8X")) {
        header.width = fields.number(24, 3) + 1;
        header.height = fields.number(27, 3) + 1;
    } else if (fields.says(12, "VP8L")) {
        const std::uint32_t sides = fields.number(21, 4);
        header.width = (sides & kSide) + 1;
        header.height = (sides >> 14 & kSide) + 1;
    } else {
        header.width = fields.number(26, 2) & kSide;
        header.height = fields.number(28, 2) & kSide;
    }
    return nullptr;
}

const char* readGif(Bytes file, PictureHeader& header) {
    constexpr unsigned kExtension = 0x21;
    constexpr unsigned kImage = 0x2C;
    const Fields fields(file, Order::LittleEndian);
    const auto colours = [&](std::size_t flagsAt) {
        const std::uint32_t flags = fields.number(flagsAt, 1);
        return (flags & 0x80) == 0 ? std::size_t{0} : std::size_t{6} << (flags & 7);
    };
    std::size_t at = 13 + colours(10);
    for (bool image = false; !image;) {
        const std::uint32_t block = fields.number(at, 1);
        image = block == kImage;
        if (!image && block != kExtension) return at < file.size() ? kContradiction : kCut;
        if (image) {
            // The picture's area and the first picture's own size: room is made for both.
            header.width = std::max(fields.number(6, 2), fields.number(at + 5, 2));
            header.height = std::max(fields.number(8, 2), fields.number(at + 7, 2));
        }
        at += image ? 11 + colours(at + 9) : 2;
        // Parts of up to 255 bytes, and one of none as the end.
        while (fields.number(at, 1) != 0) at += fields.number(at, 1) + 1;
        if (at++ >= file.size()) return kCut;
    }
    return nullptr;
}

struct Kind {
    const char* name;
    std::string_view start;
    std::size_t at;
    const char* (*read)(Bytes file, PictureHeader& header);
};

constexpr Kind kKinds[]{
    {"JPG", "\xFF\xD8\xFF", 0, readJpeg}, {"WEBP", "WEBPVP8", 8, readWebp},   {"GIF", "GIF8", 0, readGif},
    {"TIF", "II\x2A\0"sv, 0, readTiff},   {"TIF", "MM\0\x2A"sv, 0, readTiff},
};

}  // namespace

const char* readPictureHeader(Bytes file, PictureHeader& header) {
    header = {};
    for (const Kind& kind : kKinds) {
        if (!Fields(file, Order::BigEndian).says(kind.at, kind.start)) continue;
        header.kind = kind.name;
        const char* fault = kind.read(file, header);
        return fault != nullptr ? fault : findSizeFault(header.width, header.height);
    }
    return nullptr;
}

const char* findSizeFault(std::int64_t width, std::int64_t height) {
    constexpr int kLargestSide = std::numeric_limits<std::uint16_t>::max();
    if (width < 1 || height < 1) return "is an empty picture";
    if (width > kLargestSide || height > kLargestSide) return "is larger than 65,535 pixels in a side";
    return width * height > kMostPicturePixels ? "has more pixels than can be shown" : nullptr;
}

}  // namespace host
