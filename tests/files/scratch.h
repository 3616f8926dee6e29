#pragma once

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "platform/host/screen/bitmap_record.h"
#include "support/program.h"

namespace scratch {

using Bytes = std::vector<std::uint8_t>;

/// All bytes of its pixels.
inline Bytes pixels(const bitmap_s& bitmap) {
    return {bitmap_pixels(&bitmap), bitmap_pixels(&bitmap) + host::pixelBytes(bitmap)};
}

/// A file of the small pictures of every kind, which are the seeds of their fuzzer too.
inline std::string sample(const std::string& name) {
    return contentOf(COLOUR_SOURCE_DIR "/tests/fuzz/seeds/picture/" + name);
}

/// A picture of noise, the same for the same seed.
inline host::BitmapPtr noise(int width, int height, int depth, unsigned seed = 1) {
    host::BitmapPtr bitmap = host::makeBitmap(width, height, depth);
    std::generate_n(bitmap_pixels(bitmap.get()), host::pixelBytes(*bitmap), std::mt19937(seed));
    return bitmap;
}

inline bool same(const bitmap_s* left, const bitmap_s* right) {
    return left != nullptr && right != nullptr && std::memcmp(left, right, sizeof *left) == 0 &&
           pixels(*left) == pixels(*right);
}

}  // namespace scratch
