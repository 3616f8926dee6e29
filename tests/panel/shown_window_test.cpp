// What a window really shows, read from the memory of an X server's screen.

#include <SDL.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <thread>

#include "platform/host/screen/screen.h"
#include "platform/host/window/window_display.h"
#include "support/process.h"
#include "support/program.h"

namespace host {
namespace {

constexpr Size kServer{700, 700};
constexpr Size kPanel{300, 400};
constexpr Rect kAll{0, 0, kPanel.w, kPanel.h};

struct ShownWindow : testing::TestWithParam<PixelFormat> {
    ShownWindow() {
        setenv("SDL_VIDEODRIVER", "x11", 1);
        setenv("DISPLAY", (":" + server.line()).c_str(), 1);
        display = openWindow(kPanel, "Test", {}, error);
        for (Uint32 id = 1; window == nullptr && id < 100; ++id) window = SDL_GetWindowFromID(id);
        shown.fill({0, 0, 300, 200}, 0x99AABB);
        shown.fill({0, 200, 300, 200}, 0xFFEEDD);
        display->present(shown.pixels(), kAll);
    }

    /// Lets the window answer all that has happened.
    void drain() {
        for (int i = 0; i < 5; ++i) {
            while (display->wait(std::chrono::milliseconds{0})) {
            }
            std::this_thread::sleep_for(std::chrono::milliseconds{10});
        }
    }

    /// The pixels of the server's screen inside the window, row by row.
    std::vector<Uint32> pixels() {
        drain();
        const std::string file = contentOf(folder / "Xvfb_screen0");
        const auto number = [&file](std::size_t at) {  // of a header of big-endian numbers
            std::size_t value = 0;
            for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(file.at(4 * at + i));
            return value;
        };
        constexpr std::size_t kHeaderSize = 0, kRowBytes = 12, kColours = 19, kColourBytes = 12;
        const std::size_t first = number(kHeaderSize) + number(kColours) * kColourBytes;
        SDL_Rect place;
        SDL_GetWindowPosition(window, &place.x, &place.y);
        SDL_GetWindowSize(window, &place.w, &place.h);
        std::vector<Uint32> found;
        width = place.w;
        for (int y = place.y; y < place.y + place.h; ++y) {
            for (int x = place.x; x < place.x + place.w; ++x) {
                Uint32 pixel = 0;
                file.copy(reinterpret_cast<char*>(&pixel), 3,
                          first + static_cast<std::size_t>(y) * number(kRowBytes) + 4 * static_cast<std::size_t>(x));
                found.push_back(pixel);
            }
        }
        return found;
    }
    Uint32 pixel(int x, int y) {
        return pixels().at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
    }

    const TemporaryFolder folder;
    Process server{"Xvfb -displayfd 1 -fbdir '" + folder.path().string() + "' -screen 0 " + std::to_string(kServer.w) +
                   'x' + std::to_string(kServer.h) + "x24 -nolisten tcp 2>/dev/null"};
    std::string error;
    std::unique_ptr<Display> display;
    SDL_Window* window = nullptr;
    Screen shown{kPanel, GetParam()};
    int width = 0;
};

TEST_P(ShownWindow, HasMarginsAndComesBackWhenUncoveredOrResized) {
    const std::vector<Uint32> before = pixels();
    const Uint32 upper = before.front();
    const Uint32 lower = before.back();
    EXPECT_NE(upper, lower);
    SDL_Rect place;
    SDL_GetWindowPosition(window, &place.x, &place.y);
    SDL_Window* cover = SDL_CreateWindow("cover", place.x + 20, place.y + 20, 100, 100, SDL_WINDOW_BORDERLESS);
    SDL_FillRect(SDL_GetWindowSurface(cover), nullptr, 0x123456);
    SDL_UpdateWindowSurface(cover);
    EXPECT_EQ(pixel(50, 50), 0x123456U);
    SDL_DestroyWindow(cover);
    EXPECT_EQ(pixels(), before);

    for (const Size size : {Size{500, 200}, Size{200, 600}}) {
        SDL_SetWindowPosition(window, 0, 0);
        SDL_SetWindowSize(window, size.w, size.h);
        const bool wide = size.w > size.h;  // the picture is 150 × 200, or 200 × 266
        const Size margin{wide ? 175 : 0, wide ? 0 : 167};
        const std::vector<Uint32> all = pixels();
        const auto at = [&](int x, int y) { return all.at(static_cast<std::size_t>(y * size.w + x)); };
        EXPECT_EQ(at(margin.w, margin.h), upper);
        EXPECT_EQ(at(size.w - 1 - margin.w, size.h - 1 - margin.h), lower);
        EXPECT_EQ(wide ? at(margin.w - 1, 0) : at(0, margin.h - 1), 0x808080U);
        EXPECT_EQ(all.front(), 0x808080U);
        EXPECT_EQ(all.back(), 0x808080U);
    }
}

/// Also in a window of six tenths, whose pixels show parts of several of the panel's.
TEST_P(ShownWindow, WetInkLiesOverThePanelAndLeavesNoTrace) {
    for (const Size size : {kPanel, Size{180, 240}}) {
        SDL_SetWindowSize(window, size.w, size.h);
        const std::vector<Uint32> dry = pixels();
        const auto at = [&](int x, int y) { return pixel(x * size.w / kPanel.w, y * size.h / kPanel.h); };
        WetInk ink{{{50, 100}, {150, 100}, {150, 300}}, 0x200000, 10};
        display->wetInk(&ink);
        for (const Point on : {Point{100, 100}, {150, 150}, {150, 290}}) EXPECT_LT(at(on.x, on.y) & 0xFF, 0x20U);
        ink.path = {{150, 300}, {150, 350}};
        display->wetInk(&ink);
        EXPECT_EQ(at(100, 100), dry.front()) << "the piece that was drawn is the panel's again";
        EXPECT_LT(at(150, 340) & 0xFF, 0x20U);
        display->present(shown.pixels(), {140, 330, 20, 20});
        EXPECT_LT(at(150, 340) & 0xFF, 0x20U) << "it stays over what is presented";
        display->wetInk(nullptr);
        EXPECT_EQ(pixels(), dry);
    }
}

INSTANTIATE_TEST_SUITE_P(Panel, ShownWindow, testing::Values(PixelFormat::Grey8, PixelFormat::Rgb24),
                         [](const auto& each) { return each.param == PixelFormat::Grey8 ? "grey" : "colour"; });

}  // namespace
}  // namespace host
