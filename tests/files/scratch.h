#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/host/screen/bitmap_record.h"
#include "support/temporary_folder.h"

namespace scratch {

using Bytes = std::vector<std::uint8_t>;

inline Bytes read(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void write(const std::filesystem::path& file, const Bytes& bytes) {
    // A file written anew costs no disk access; one that is cut to nothing and filled again does.
    std::filesystem::remove(file);
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

/// All bytes of its pixels.
inline Bytes pixels(const bitmap_s& bitmap) {
    return {bitmap_pixels(&bitmap), bitmap_pixels(&bitmap) + host::pixelBytes(bitmap)};
}

/// A picture of noise, the same for the same seed.
inline host::BitmapPtr noise(int width, int height, int depth, unsigned seed = 1) {
    host::BitmapPtr bitmap = host::makeBitmap(width, height, depth);
    std::generate_n(bitmap_pixels(bitmap.get()), host::pixelBytes(*bitmap), std::mt19937(seed));
    return bitmap;
}

inline bool same(const bitmap_s* left, const bitmap_s* right) {
    return left != nullptr && right != nullptr && std::memcmp(left, right, sizeof *left) == 0 &&
           std::memcmp(bitmap_pixels(left), bitmap_pixels(right), host::pixelBytes(*left)) == 0;
}

}  // namespace scratch
