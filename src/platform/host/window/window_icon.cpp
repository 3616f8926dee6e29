#include "platform/host/window/window_icon.h"

#include <SDL_surface.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace host {

namespace {

constexpr int kSide = 48;
constexpr std::uint32_t kPaper = 0xFFFFFFFF;
constexpr std::uint32_t kEdge = 0xFF303030;
constexpr std::uint32_t kStroke = 0xFFE02020;

using Pixels = std::array<std::uint32_t, std::size_t{kSide} * kSide>;

std::uint32_t& pixelOf(Pixels& pixels, int x, int y) {
    return pixels.at(static_cast<std::size_t>(y) * kSide + static_cast<std::size_t>(x));
}

void drawPage(Pixels& pixels) {
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const int inside = std::min({x - 6, kSide - 7 - x, y - 2, kSide - 3 - y});
            if (inside >= 0) pixelOf(pixels, x, y) = inside < 2 ? kEdge : kPaper;
        }
    }
}

// A wave from the page's lower left to its upper right.
void drawStroke(Pixels& pixels) {
    constexpr int kSteps = 60;
    for (int step = 0; step <= kSteps; ++step) {
        const double way = static_cast<double>(step) / kSteps;
        const int x = static_cast<int>(std::lround(13 + 22 * way));
        const int y = static_cast<int>(std::lround(34 - 20 * way + 7 * std::sin(way * 6.28)));
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx) {
                if (dx * dx + dy * dy < 7) pixelOf(pixels, x + dx, y + dy) = kStroke;
            }
        }
    }
}

}  // namespace

void setIcon(SDL_Window* window) {
    Pixels pixels{};
    drawPage(pixels);
    drawStroke(pixels);
    SDL_Surface* icon =
        SDL_CreateRGBSurfaceWithFormatFrom(pixels.data(), kSide, kSide, 32, kSide * 4, SDL_PIXELFORMAT_ARGB8888);
    if (icon == nullptr) return;
    SDL_SetWindowIcon(window, icon);
    SDL_FreeSurface(icon);
}

}  // namespace host
