#include "platform/host/files/picture_file.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <new>
#include <vector>

#include "platform/host/files/bmp_header.h"
#include "platform/host/files/bmp_rows.h"
#include "platform/host/files/input_file.h"
#include "platform/host/files/png_file.h"
#include "platform/host/files/replaced_file.h"
#include "platform/host/files/surface_picture.h"

namespace host {

namespace {

/// Decoders get the whole file at once. No picture of kMostPicturePixels needs more than four bytes a pixel.
constexpr std::uint64_t kMostFileBytes = 4 * static_cast<std::uint64_t>(kMostPicturePixels) + (std::uint64_t{1} << 20);

std::string ending(const std::filesystem::path& file) {
    std::string text = file.extension().string();
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool readAll(const InputFile& file, std::vector<std::uint8_t>& bytes, std::string& reason) {
    if (file.size() > kMostFileBytes) {
        reason = "is larger than any picture that can be shown";
        return false;
    }
    bytes.resize(static_cast<std::size_t>(file.size()));
    if (file.read(0, bytes)) return true;
    reason = "cannot be read to its end";
    return false;
}

BitmapPtr loadPlainBmp(const PlainBmp& bmp, std::string& reason) {
    const auto [width, height] = bmp.size();
    BitmapPtr bitmap = makeBitmap(width, height, bmp.depth());
    if (bitmap == nullptr) {
        reason = "is too large for a bitmap record";
        return nullptr;
    }
    const bool whole =
        bmp.read([&](int y, const std::uint8_t* stored) { bmp.convert(stored, bitmapRow(*bitmap, y), bitmap->width); });
    if (whole) return bitmap;
    reason = "cannot be read to its end";
    return nullptr;
}

BitmapPtr loadBmp(const InputFile& file, std::string& reason) {
    const auto header = readBmpHeader(file, reason);
    if (!header) return nullptr;
    if (const auto plain = PlainBmp::open(file, *header)) return loadPlainBmp(*plain, reason);
    std::vector<std::uint8_t> bytes;
    if (!readAll(file, bytes, reason)) return nullptr;
    const SurfacePtr surface = decodeSurface(PictureKind::Bmp, bytes, reason);
    std::vector<std::uint8_t>().swap(bytes);
    return surface == nullptr ? nullptr : recordFromSurface(*surface, reason);
}

BitmapPtr loadPng(const InputFile& file, std::string& reason) {
    std::vector<std::uint8_t> bytes;
    if (!readAll(file, bytes, reason)) return nullptr;
    const std::span<const std::uint8_t> reduced = reducePng(bytes, reason);
    if (reduced.empty()) return nullptr;
    const SurfacePtr surface = decodeSurface(PictureKind::Png, reduced, reason);
    std::vector<std::uint8_t>().swap(bytes);
    return surface == nullptr ? nullptr : recordFromSurface(*surface, reason);
}

BitmapPtr load(const std::filesystem::path& path, std::string& reason) {
    InputFile file;
    if (!file.open(path, reason)) return nullptr;
    if (file.size() == 0) {
        reason = "is empty";
        return nullptr;
    }
    std::array<std::uint8_t, 8> room{};
    const std::span start = std::span(room).first(std::min<std::size_t>(room.size(), file.size()));
    if (!file.read(0, start)) {
        reason = "cannot be read";
        return nullptr;
    }
    if (isPng(start)) return loadPng(file, reason);
    if (start.size() >= 2 && start[0] == 'B' && start[1] == 'M') return loadBmp(file, reason);
    reason = "is neither a BMP nor a PNG picture";
    return nullptr;
}

/// The picture itself, or a copy of depth 8 in `copy` when it has fewer bits. Null when it cannot be saved.
const bitmap_s* savable(const bitmap_s& bitmap, BitmapPtr& copy) {
    const bool isPicture = bitmap.width > 0 && bitmap.height > 0 &&
                           bitmap.scanline >= (bitmap.width * bitmap.depth + 7) / 8 &&
                           std::int64_t{bitmap.width} * bitmap.height <= kMostPicturePixels;
    if (!isPicture) return nullptr;
    const int depth = bitmap.depth;
    if (depth == 8 || depth == 24 || depth == 32) return &bitmap;
    if (depth != 1 && depth != 4) return nullptr;
    copy = makeBitmap(bitmap.width, bitmap.height, 8);
    if (copy == nullptr) return nullptr;
    const int most = (1 << depth) - 1;
    for (int y = 0; y < bitmap.height; ++y) {
        const std::uint8_t* from = bitmapRow(bitmap, y);
        std::uint8_t* to = bitmapRow(*copy, y);
        for (int x = 0; x < bitmap.width; ++x) {
            const int shift = 8 - depth - x * depth % 8;
            to[x] = static_cast<std::uint8_t>((from[x * depth / 8] >> shift & most) * 255 / most);
        }
    }
    return copy.get();
}

bool save(const std::filesystem::path& path, const bitmap_s& bitmap, Sync sync, std::string& reason) {
    const std::string format = ending(path);
    if (format == ".jpg" || format == ".jpeg") {
        reason = "JPEG cannot be saved without loss; use .bmp or .png";
        return false;
    }
    if (!isPictureName(path)) {
        reason = "pictures are saved under names that end in .bmp or .png";
        return false;
    }
    BitmapPtr copy;
    const bitmap_s* picture = savable(bitmap, copy);
    if (picture == nullptr) {
        reason = "a bitmap of this size and depth cannot be saved";
        return false;
    }
    ReplacedFile file;
    const bool written =
        file.open(path) && (format == ".png" ? encodePng(file, *picture, reason) : writeBmp(file, *picture));
    if (written && file.commit(sync)) return true;
    if (file.failed()) reason = file.reason();
    return false;
}

}  // namespace

BitmapPtr loadPicture(const std::filesystem::path& file, std::string& error) {
    error.clear();
    BitmapPtr bitmap;
    try {
        bitmap = load(file, error);
    } catch (const std::bad_alloc&) {
        error = "there is not enough memory to read it";
    }
    if (bitmap == nullptr) error = printable(file) + ": " + error;
    return bitmap;
}

bool savePicture(const std::filesystem::path& file, const bitmap_s& bitmap, std::string& error, Sync sync) {
    error.clear();
    if (save(file, bitmap, sync, error)) return true;
    error = printable(file) + ": " + error;
    return false;
}

bool isPictureName(const std::filesystem::path& file) {
    const std::string format = ending(file);
    return format == ".bmp" || format == ".png";
}

std::string printable(const std::filesystem::path& file) {
    std::string text = file.string();
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return std::iscntrl(c) != 0; }, '?');
    return text;
}

}  // namespace host
