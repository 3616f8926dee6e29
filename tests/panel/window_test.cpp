#include <SDL.h>
#include <gmock/gmock.h>

#include <cstdlib>

#include "platform/host/screen/screen.h"
#include "platform/host/window/window_display.h"
#include "support/input_words.h"

namespace host {
namespace {

using testing::ElementsAre;

constexpr Rect kAll{0, 0, 300, 400};

/// A window of 300 × 400 pixels on SDL's own make-believe screen.
struct WindowTest : testing::Test {
    WindowTest() {
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        display = openWindow(kAll.size(), "Test", COLOUR_SOURCE_DIR "/theme/browser/icon.svg", error);
        for (Uint32 id = 1; window == nullptr && id < 100; ++id) window = SDL_GetWindowFromID(id);
        drain();
    }

    std::vector<std::string> drain() {
        std::vector<std::string> inputs;
        while (std::optional<Input> input = display->wait(std::chrono::milliseconds{0}))
            inputs.push_back(inWords(*input));
        return inputs;
    }

    static SDL_Event event(Uint32 type) {
        SDL_Event made{};
        made.type = type;
        return made;
    }
    static void push(SDL_Event made) { SDL_PushEvent(&made); }
    static void move(int x, int y) {
        SDL_Event made = event(SDL_MOUSEMOTION);
        made.motion.x = x;
        made.motion.y = y;
        push(made);
    }
    static void button(Uint32 type, int x, int y, Uint8 which = SDL_BUTTON_LEFT) {
        SDL_Event made = event(type);
        made.button.x = x;
        made.button.y = y;
        made.button.button = which;
        push(made);
    }
    static void finger(Uint32 type, SDL_FingerID id, float x, float y) {
        SDL_Event made = event(type);
        made.tfinger.fingerId = id;
        made.tfinger.x = x;
        made.tfinger.y = y;
        push(made);
    }

    Uint32 pixel(int x, int y) {
        const SDL_Surface* surface = SDL_GetWindowSurface(window);
        const auto* row = static_cast<const Uint8*>(surface->pixels) + y * surface->pitch;
        return reinterpret_cast<const Uint32*>(row)[x] & 0xFFFFFF;
    }

    std::string error;
    std::unique_ptr<Display> display;
    SDL_Window* window = nullptr;
    Screen shown{kAll.size(), PixelFormat::Rgb24};
};

TEST_F(WindowTest, ShowsOnlyWhatIsPresentedAndKeepsItsShape) {
    shown.fill(kAll, 0x112233);
    display->present(shown.pixels(), {10, 20, 5, 5});
    drain();
    for (const Point at : {Point{10, 20}, {14, 24}}) EXPECT_EQ(pixel(at.x, at.y), 0x112233U);
    for (const Point at : {Point{9, 20}, {15, 24}}) EXPECT_EQ(pixel(at.x, at.y), 0xFFFFFFU);

    shown.fill(kAll, kWhite);
    shown.fill({0, 0, 150, 400}, 0x0000FF);
    display->present(shown.pixels(), kAll);
    drain();
    SDL_SetWindowSize(window, 500, 200);  // the picture is 150 wide, in the middle
    drain();
    for (const Point at : {Point{175, 0}, {249, 199}}) EXPECT_EQ(pixel(at.x, at.y), 0x0000FFU);
    for (const Point at : {Point{250, 100}, {324, 100}}) EXPECT_EQ(pixel(at.x, at.y), 0xFFFFFFU);
    for (const Point at : {Point{174, 100}, {325, 100}}) EXPECT_EQ(pixel(at.x, at.y), 0x808080U) << "the border";
    button(SDL_MOUSEBUTTONDOWN, 174, 100);  // a press on the border is none
    move(200, 100);
    button(SDL_MOUSEBUTTONUP, 200, 100);
    button(SDL_MOUSEBUTTONDOWN, 175, 0);
    move(324, 199);
    button(SDL_MOUSEBUTTONUP, 499, 100);
    EXPECT_THAT(drain(), ElementsAre("down 1,1", "move 299,399", "up 299,201"));
}

TEST_F(WindowTest, EveryMoveOfTheLeftButtonArrives) {
    move(1, 1);
    button(SDL_MOUSEBUTTONDOWN, 2, 2, SDL_BUTTON_RIGHT);
    move(3, 3);
    button(SDL_MOUSEBUTTONDOWN, 5, 5);
    std::vector<std::string> expected{"down 5,5"};
    for (int i = 0; i < 100; ++i) {
        move(6 + i, 7);
        expected.push_back("move " + std::to_string(6 + i) + ",7");
    }
    button(SDL_MOUSEBUTTONUP, 8, 8, SDL_BUTTON_RIGHT);
    button(SDL_MOUSEBUTTONUP, -40, 500);
    expected.emplace_back("up 0,399");  // outside the window it is the nearest pixel
    EXPECT_EQ(drain(), expected);
}

TEST_F(WindowTest, OneFingerDrawsOthersAreIgnored) {
    finger(SDL_FINGERDOWN, 7, 0.5F, 0.5F);
    finger(SDL_FINGERDOWN, 8, 0.1F, 0.1F);
    finger(SDL_FINGERMOTION, 8, 0.2F, 0.2F);
    button(SDL_MOUSEBUTTONDOWN, 5, 5);
    finger(SDL_FINGERMOTION, 7, 0.501F, 0.25F);
    finger(SDL_FINGERUP, 8, 0.2F, 0.2F);
    finger(SDL_FINGERUP, 7, 1.0F, 1.0F);
    finger(SDL_FINGERDOWN, 8, 0.0F, 0.0F);
    EXPECT_THAT(drain(), ElementsAre("down 150,200", "move 150,100", "up 299,399", "down 0,0"));
}

TEST_F(WindowTest, AClosedWindowIsToldOnce) {
    SDL_Event closed = event(SDL_WINDOWEVENT);
    closed.window.event = SDL_WINDOWEVENT_CLOSE;
    closed.window.windowID = SDL_GetWindowID(window);
    push(closed);
    push(event(SDL_QUIT));
    EXPECT_THAT(drain(), ElementsAre("close"));
}

}  // namespace
}  // namespace host
