#pragma once

#include <SDL_image.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/host/screen/surface.h"

/// Small files of the kinds that are read but never saved.
namespace scratch {

using namespace std::string_literals;

/// Of 32 × 16 pixels, white with a black quarter above and left. `notes` is its EXIF segment.
inline std::string jpeg(const std::string& notes = "") {
    const host::SurfacePtr surface(SDL_CreateRGBSurfaceWithFormat(0, 32, 16, 24, SDL_PIXELFORMAT_RGB24));
    const SDL_Rect quarter{0, 0, 16, 8};
    SDL_FillRect(surface.get(), nullptr, 0xFFFFFF);
    SDL_FillRect(surface.get(), &quarter, 0);
    std::string file(10000, '\0');
    SDL_RWops* stream = SDL_RWFromMem(file.data(), static_cast<int>(file.size()));
    EXPECT_EQ(IMG_SaveJPG_RW(surface.get(), stream, 0, 95), 0) << SDL_GetError();
    file.resize(static_cast<std::size_t>(SDL_RWtell(stream)));
    SDL_RWclose(stream);
    return file.insert(2, notes);
}

/// Of 2 × 1 pixels: the second is transparent black, the first red.
inline std::string gif() {
    return "GIF89a\2\0\1\0\x80\0\0\0\0\0\xFF\0\0"s + "\x21\xF9\4\1\0\0\0\0"s + "\x2C\0\0\0\0\2\0\1\0\0\2\2\x0C\x0A\0;"s;
}

/// Of 2 × 1 pixels: red, green.
inline std::string tiff() {
    const auto entry = [](char tag, char high, char value) {
        return std::string{tag, high, 3, 0, 1, 0, 0, 0, value, 0, 0, 0};
    };
    return "II\x2A\0\x0E\0\0\0\xFF\0\0\0\xFF\0\x09\0"s + entry(0, 1, 2) + entry(1, 1, 1) + entry(2, 1, 8) +
           entry(3, 1, 1) + entry(6, 1, 2) + entry(17, 1, 8) + entry(21, 1, 3) + entry(22, 1, 1) + entry(23, 1, 6) +
           "\0\0\0\0"s;
}

/// Of one black pixel.
inline std::string webp() {
    return "RIFF\x24\0\0\0WEBPVP8 \x18\0\0\0\x30\1\0\x9D\1\x2A\1\0\1\0\2\0\x34\x25\xA4\0\3\x70\0\xFE\xFB\x94\0\0"s;
}

}  // namespace scratch
