#include "platform/host/files/svg_icon.h"

#include <SDL_image.h>

#include <array>
#include <fstream>
#include <iterator>
#include <string_view>

#include "platform/host/screen/paint.h"
#include "platform/host/screen/surface.h"

namespace host {

namespace {

/// Samples per pixel and side. The SVG library covers a sample in five lines, too few for one pixel: flat curves
/// would show steps.
constexpr int kSamples = 2;
constexpr std::uintmax_t kLargestFile = 1 << 20;
constexpr int kLargestSide = 4096;
/// A drawing on its grid that would fill less than this part of the picture is stretched over it instead: on a
/// very coarse panel, size counts more than sharp lines.
constexpr double kLeastFill = 0.75;

/// Where the drawing stands in its picture, in samples.
Rect placeDrawing(const IconLayout& layout) {
    const int side = std::min(layout.size.w, layout.size.h);
    const int unit = layout.grid > 0 ? side / layout.grid : 0;
    const int drawn = unit * layout.grid;
    if (drawn < kLeastFill * side) return {0, 0, layout.size.w * kSamples, layout.size.h * kSamples};
    // A line of an odd number of pixels is centred in a pixel, so the grid's whole coordinates stand there.
    const int halfPixel = unit % 2 * kSamples / 2;
    return {(layout.size.w - drawn) / 2 * kSamples + halfPixel, (layout.size.h - drawn) / 2 * kSamples + halfPixel,
            drawn * kSamples, drawn * kSamples};
}

/// The file's text when it is a whole SVG document. The SVG library takes a cut one for a simpler drawing.
std::string readDocument(const std::filesystem::path& file, std::string& error) {
    std::error_code failure;
    const std::uintmax_t size = std::filesystem::file_size(file, failure);
    std::ifstream stream(file, std::ios::binary);
    if (failure || !stream) {
        error = file.string() + ": the icon cannot be read";
        return {};
    }
    std::string text;
    if (size <= kLargestFile) text.assign(std::istreambuf_iterator<char>(stream), {});
    constexpr std::string_view kEnd = "</svg>";
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    const bool whole = last != std::string::npos && std::string_view(text).substr(0, last + 1).ends_with(kEnd);
    if (whole && text.find("<svg") != std::string::npos && text.find('\0') == std::string::npos) return text;
    error = file.string() + ": not a whole SVG drawing";
    return {};
}

SurfacePtr rasterise(const std::string& document, Size size) {
    SDL_RWops* stream = SDL_RWFromConstMem(document.data(), static_cast<int>(document.size()));
    SurfacePtr drawing(IMG_LoadSizedSVG_RW(stream, size.w, size.h));
    SDL_RWclose(stream);
    if (drawing == nullptr || drawing->format->format == SDL_PIXELFORMAT_RGBA32) return drawing;
    return SurfacePtr(SDL_ConvertSurfaceFormat(drawing.get(), SDL_PIXELFORMAT_RGBA32, 0));
}

/// One pixel, from the samples that lie in it.
struct Mean {
    int alpha = 0;                // sum over the samples
    std::array<int, 3> colour{};  // sums of colour × alpha

    void add(const std::uint8_t* rgba) {
        alpha += rgba[3];
        for (std::size_t i = 0; i < colour.size(); ++i) colour[i] += rgba[i] * rgba[3];
    }

    [[nodiscard]] std::uint8_t greyOnWhite() const {
        constexpr int kFull = 255 * kSamples * kSamples;
        const auto onWhite = [this](int sum) {
            return static_cast<std::uint8_t>((sum + (kFull - alpha) * 255 + kFull / 2) / kFull);
        };
        return luminance({onWhite(colour[0]), onWhite(colour[1]), onWhite(colour[2])});
    }

    void writeStraight(std::uint8_t* rgba) const {
        for (std::size_t i = 0; i < colour.size(); ++i)
            rgba[i] = static_cast<std::uint8_t>(alpha > 0 ? (colour[i] + alpha / 2) / alpha : 0);
        rgba[3] = static_cast<std::uint8_t>(alpha / (kSamples * kSamples));
    }
};

/// The mean of the picture's pixel (x, y); what the drawing does not cover is transparent.
Mean meanAt(const SDL_Surface& drawing, Point place, Point pixel) {
    Mean mean;
    for (int i = 0; i < kSamples * kSamples; ++i) {
        int x = pixel.x * kSamples + i % kSamples - place.x;
        int y = pixel.y * kSamples + i / kSamples - place.y;
        // The SVG library rounds sizes down and may be one sample short.
        if (x == drawing.w) --x;
        if (y == drawing.h) --y;
        if (x < 0 || y < 0 || x >= drawing.w || y >= drawing.h) continue;
        mean.add(static_cast<const std::uint8_t*>(drawing.pixels) + std::ptrdiff_t{y} * drawing.pitch +
                 std::ptrdiff_t{x} * 4);
    }
    return mean;
}

}  // namespace

BitmapPtr drawSvgIcon(const std::filesystem::path& file, const IconLayout& layout, std::string& error) {
    const std::string document = readDocument(file, error);
    if (document.empty()) return nullptr;
    if (layout.size.w > kLargestSide || layout.size.h > kLargestSide) {
        error = file.string() + ": the icon's size is over " + std::to_string(kLargestSide) + " pixels";
        return nullptr;
    }
    BitmapPtr picture = makeBitmap(layout.size.w, layout.size.h, layout.transparent ? 32 : 8);
    const Rect place = placeDrawing(layout);
    const SurfacePtr drawing = picture == nullptr ? nullptr : rasterise(document, place.size());
    if (drawing == nullptr) {
        error = file.string() + ": the icon cannot be drawn: " + (picture == nullptr ? "no such size" : IMG_GetError());
        return nullptr;
    }
    for (int y = 0; y < layout.size.h; ++y) {
        std::uint8_t* out = bitmapRow(*picture, y);
        for (int x = 0; x < layout.size.w; ++x) {
            const Mean mean = meanAt(*drawing, {place.x, place.y}, {x, y});
            if (layout.transparent) {
                mean.writeStraight(out + std::ptrdiff_t{x} * 4);
            } else {
                out[x] = mean.greyOnWhite();
            }
        }
    }
    return picture;
}

}  // namespace host
