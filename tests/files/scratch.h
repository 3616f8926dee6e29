#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/host/screen/bitmap_record.h"

namespace scratch {

using Bytes = std::vector<std::uint8_t>;

/// A folder of the test's own that goes away with it.
class Folder {
public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "colour-test-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(path_); }

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::size_t entries() const {
        const std::filesystem::directory_iterator all(path_);
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

private:
    std::filesystem::path path_;
};

inline Bytes read(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void write(const std::filesystem::path& file, const Bytes& bytes) {
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

/// A picture of noise, the same for the same seed.
inline host::BitmapPtr noise(int width, int height, int depth, unsigned seed = 1) {
    host::BitmapPtr bitmap = host::makeBitmap(width, height, depth);
    std::mt19937 random(seed);
    for (std::size_t i = 0; i < host::pixelBytes(*bitmap); ++i) {
        bitmap_pixels(bitmap.get())[i] = static_cast<std::uint8_t>(random());
    }
    return bitmap;
}

inline bool same(const bitmap_s* left, const bitmap_s* right) {
    return left != nullptr && right != nullptr && std::memcmp(left, right, sizeof *left) == 0 &&
           std::memcmp(bitmap_pixels(left), bitmap_pixels(right), host::pixelBytes(*left)) == 0;
}

}  // namespace scratch
