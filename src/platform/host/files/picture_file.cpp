#include "platform/host/files/picture_file.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <new>
#include <vector>

#include "platform/host/files/bmp_file.h"
#include "platform/host/files/photograph.h"
#include "platform/host/files/png_file.h"
#include "platform/host/files/replaced_file.h"
#include "platform/host/screen/blit.h"

namespace host {

namespace {

namespace fs = std::filesystem;

std::string ending(const fs::path& file) {
    std::string text = file.extension().string();
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

Picture decode(std::istream& file, Formats formats, std::string& reason) {
    std::string start(8, '\0');
    start.resize(static_cast<std::size_t>(file.read(start.data(), 8).gcount()));
    file.clear(file.rdstate() & std::ios::badbit);
    file.seekg(0);
    if (start.starts_with("\x89PNG\r\n\x1A\n")) return loadPng(file, reason);
    if (start.starts_with("BM")) return loadBmp(file, reason);
    if (!start.empty() && formats == Formats::All) return loadPhotograph(contentsOf(file), reason);
    reason = start.empty() ? "is empty" : "is neither a BMP nor a PNG picture";
    return {};
}

Picture load(const fs::path& path, Formats formats, std::string& reason) {
    std::error_code error;
    // Opening a named pipe that nobody writes to would stop the program here.
    if (!fs::is_regular_file(path, error)) {
        reason = error ? error.message() : "is not an ordinary file";
        return {};
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        reason = std::strerror(errno);
        return {};
    }
    Picture picture = decode(file, formats, reason);
    if (!file.bad()) return picture;
    // What the decoders made of the bytes that the disk did not give counts for nothing.
    reason = std::string("cannot be read: ") + std::strerror(errno);
    return {};
}

/// The picture itself, or a copy of depth 8 in `copy` when it has fewer bits. Null when it cannot be saved.
const bitmap_s* savable(const bitmap_s& bitmap, BitmapPtr& copy) {
    const std::int64_t pixels = std::int64_t{bitmap.width} * bitmap.height;
    if (!drawable(bitmap) || pixels == 0 || pixels > kMostPicturePixels) return nullptr;
    if (bitmap.depth >= 8) return &bitmap;
    Framebuffer page({bitmap.width, bitmap.height}, PixelFormat::Grey8);
    Damage unheeded(page.size());
    drawBitmap(page, {}, bitmap, page.bounds(), unheeded);
    copy = captureArea(page, page.bounds());
    return copy.get();
}

bool save(Replacement& replacement, const bitmap_s& bitmap, Sync sync, std::string& reason) {
    if (!isPageName(replacement.target())) {
        reason = "pictures are saved under names that end in .bmp or .png";
        return false;
    }
    BitmapPtr copy;
    const bitmap_s* picture = savable(bitmap, copy);
    if (picture == nullptr) {
        reason = "a bitmap of this size and depth cannot be saved";
        return false;
    }
    const std::vector<std::uint8_t> bytes =
        ending(replacement.target()) == ".png" ? encodePng(*picture, reason) : encodeBmp(*picture);
    return !bytes.empty() && replacement.put(bytes, sync, reason);
}

}  // namespace

Picture readPicture(const fs::path& file, Formats formats, std::string& error) {
    std::string reason;
    Picture picture;
    try {
        picture = load(file, formats, reason);
    } catch (const std::bad_alloc&) {
        reason = "there is not enough memory to read it";
    }
    error = picture.bitmap != nullptr ? "" : printable(file) + ": " + printable(reason);
    return picture;
}

BitmapPtr loadPicture(const fs::path& file, std::string& error) {
    return readPicture(file, Formats::Pages, error).bitmap;
}

std::vector<std::uint8_t> contentsOf(std::istream& file) {
    constexpr std::streamoff kMostBytes = 8 * kMostPicturePixels;  // what the largest picture takes, not packed
    const auto size = static_cast<std::streamoff>(file.seekg(0, std::ios::end).tellg());
    std::vector<std::uint8_t> bytes;
    if (size > 0 && size <= kMostBytes) bytes = largeBlock(static_cast<std::size_t>(size), 0);
    file.seekg(0).read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

bool savePicture(const fs::path& file, const bitmap_s& bitmap, std::string& error, Sync sync) {
    Replacement replacement(file);
    return savePicture(replacement, bitmap, error, sync);
}

bool savePicture(Replacement& replacement, const bitmap_s& bitmap, std::string& error, Sync sync) {
    std::string reason;
    bool saved = false;
    try {
        saved = save(replacement, bitmap, sync, reason);
    } catch (const std::bad_alloc&) {
        reason = "there is not enough memory to write it";
    }
    error = saved ? "" : printable(replacement.target()) + ": " + reason;
    return saved;
}

bool isPageName(const fs::path& file) {
    const std::string format = ending(file);
    return format == ".bmp" || format == ".png";
}

bool isPictureName(const fs::path& file) {
    constexpr std::array kOthers = {".jpg", ".jpeg", ".webp", ".gif", ".tif", ".tiff"};
    return isPageName(file) || std::ranges::find(kOthers, ending(file)) != kOthers.end();
}

std::string printable(const fs::path& file) {
    std::string text = file.string();
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return std::iscntrl(c) != 0; }, '?');
    return text;
}

}  // namespace host
