#include <SDL.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <future>
#include <thread>

#include "platform/host/screen/screen.h"
#include "platform/host/window/window_display.h"
#include "platform/host/window/window_view.h"
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

    /// A motion's place lies in an event where a button's does.
    static void mouse(Uint32 type, int x, int y, Uint8 which = SDL_BUTTON_LEFT) {
        SDL_Event made{type};
        made.button.x = x;
        made.button.y = y;
        made.button.button = which;
        SDL_PushEvent(&made);
    }
    static void finger(Uint32 type, SDL_FingerID id, float x, float y) {
        SDL_Event made{type};
        made.tfinger.fingerId = id;
        made.tfinger.x = x;
        made.tfinger.y = y;
        SDL_PushEvent(&made);
    }

    std::vector<Uint32> pixels(std::initializer_list<Point> points) {
        drain();
        std::vector<Uint32> found;
        const SDL_Surface* surface = SDL_GetWindowSurface(window);
        const auto* rows = static_cast<const Uint32*>(surface->pixels);
        for (const auto [x, y] : points) found.push_back(rows[y * surface->pitch / 4 + x] & 0xFFFFFF);
        return found;
    }

    std::string error;
    std::unique_ptr<Display> display;
    SDL_Window* window = nullptr;
};

TEST_F(WindowTest, ShowsOnlyWhatIsPresentedAndKeepsItsShape) {
    Screen shown{kAll.size(), PixelFormat::Rgb24};
    shown.fill(kAll, 0x112233);
    display->present(shown.pixels(), {10, 20, 5, 5});
    EXPECT_THAT(pixels({{10, 20}, {14, 24}, {9, 20}, {15, 24}}), ElementsAre(0x112233, 0x112233, 0xFFFFFF, 0xFFFFFF));
    shown.fill(kAll, kWhite);
    shown.fill({0, 0, 150, 400}, 0x0000FF);
    display->present(shown.pixels(), kAll);
    drain();
    SDL_SetWindowSize(window, 500, 200);  // the picture is 150 wide, in the middle of a grey border
    EXPECT_THAT(pixels({{174, 100}, {175, 0}, {249, 199}, {250, 100}, {324, 100}, {325, 100}}),
                ElementsAre(0x808080, 0x0000FF, 0x0000FF, 0xFFFFFF, 0xFFFFFF, 0x808080));
    mouse(SDL_MOUSEBUTTONDOWN, 174, 100);  // a press on the border is none
    mouse(SDL_MOUSEMOTION, 200, 100);
    mouse(SDL_MOUSEBUTTONUP, 200, 100);
    mouse(SDL_MOUSEBUTTONDOWN, 175, 0);
    mouse(SDL_MOUSEMOTION, 324, 199);
    mouse(SDL_MOUSEBUTTONUP, 499, 100);
    EXPECT_THAT(drain(), ElementsAre("down 1,1", "move 299,399", "up 299,201"));
}

TEST_F(WindowTest, EveryMoveOfTheLeftButtonArrives) {
    mouse(SDL_MOUSEMOTION, 1, 1);
    mouse(SDL_MOUSEBUTTONDOWN, 2, 2, SDL_BUTTON_RIGHT);
    mouse(SDL_MOUSEMOTION, 3, 3);
    mouse(SDL_MOUSEBUTTONDOWN, 5, 5);
    for (int x = 6; x < 10; ++x) mouse(SDL_MOUSEMOTION, x, 7);
    mouse(SDL_MOUSEBUTTONUP, 8, 8, SDL_BUTTON_RIGHT);
    mouse(SDL_MOUSEBUTTONUP, -40, 500);  // outside the window it is the nearest pixel
    EXPECT_THAT(drain(), ElementsAre("down 5,5", "move 6,7", "move 7,7", "move 8,7", "move 9,7", "up 0,399"));
}

TEST_F(WindowTest, OneFingerDrawsOthersAreIgnored) {
    finger(SDL_FINGERDOWN, 7, 0.5F, 0.5F);
    finger(SDL_FINGERDOWN, 8, 0.1F, 0.1F);
    finger(SDL_FINGERMOTION, 8, 0.2F, 0.2F);
    finger(SDL_FINGERMOTION, 7, 0.501F, 0.25F);
    finger(SDL_FINGERUP, 8, 0.2F, 0.2F);
    finger(SDL_FINGERUP, 7, 1.0F, 1.0F);
    finger(SDL_FINGERDOWN, 8, 0.0F, 0.0F);
    EXPECT_THAT(drain(), ElementsAre("down 150,200", "move 150,100", "up 299,399", "down 0,0"));
}

TEST_F(WindowTest, ThePenTakesOverFromThePalmForHalfASecond) {
    finger(SDL_FINGERDOWN, 7, 0.5F, 0.5F);
    mouse(SDL_MOUSEBUTTONDOWN, 5, 5);
    finger(SDL_FINGERMOTION, 7, 0.501F, 0.25F);
    finger(SDL_FINGERUP, 7, 1.0F, 1.0F);
    finger(SDL_FINGERDOWN, 8, 0.0F, 0.0F);
    mouse(SDL_MOUSEMOTION, 6, 6);
    mouse(SDL_MOUSEBUTTONUP, 7, 7);
    finger(SDL_FINGERDOWN, 9, 0.0F, 0.0F);
    EXPECT_THAT(drain(), ElementsAre("down 150,200", "up 150,200", "down 5,5", "move 6,6", "up 7,7"));
    std::this_thread::sleep_for(std::chrono::milliseconds{510});
    finger(SDL_FINGERMOTION, 9, 0.1F, 0.1F);
    finger(SDL_FINGERDOWN, 9, 0.0F, 0.0F);
    EXPECT_THAT(drain(), ElementsAre("down 0,0"));
}

/// A pen of a thousand samples in a second, each of which draws: the window is painted for many of them together, and
/// no sample is lost.
TEST_F(WindowTest, SamplesAreShownTogetherYetNeverLate) {
    constexpr int kSamples = 1000;
    Screen shown{kAll.size(), PixelFormat::Rgb24};
    const auto* surface = SDL_GetWindowSurface(window);
    const auto seen = [&] { return (*static_cast<const Uint32*>(surface->pixels) & 0xFFFFFF); };
    mouse(SDL_MOUSEBUTTONDOWN, 0, 0);
    for (int i = 0; i < kSamples; ++i) mouse(SDL_MOUSEMOTION, i % 300, i / 300);
    int paintings = 0;
    for (int i = 0; i <= kSamples; ++i) {
        const Uint32 before = seen();
        const std::optional<Input> input = display->wait(std::chrono::milliseconds{0});
        ASSERT_TRUE(input) << i;
        ASSERT_EQ(input->at, i == 0 ? Point{} : (Point{(i - 1) % 300, (i - 1) / 300}));
        if (seen() != before) ++paintings;
        if (i == 501) {
            EXPECT_EQ(seen(), 500U) << "it has been unseen for too long";
        }
        shown.fill({0, 0, 1, 1}, i);
        display->present(shown.pixels(), {0, 0, 1, 1});
        if (i == 500) std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
    drain();
    EXPECT_EQ(seen(), static_cast<Uint32>(kSamples));
    EXPECT_LT(paintings, kSamples / 2);
}

TEST_F(WindowTest, AClosedWindowIsToldOnce) {
    SDL_Event closed{SDL_WINDOWEVENT};
    closed.window.event = SDL_WINDOWEVENT_CLOSE;
    closed.window.windowID = SDL_GetWindowID(window);
    SDL_PushEvent(&closed);
    SDL_Event quit{SDL_QUIT};
    SDL_PushEvent(&quit);
    EXPECT_THAT(drain(), ElementsAre("close"));
}

TEST_F(WindowTest, AWakeEndsTheWaitInProgressOrTheNext) {
    display->wake();
    EXPECT_FALSE(display->wait(std::nullopt).has_value());
    auto woken =
        std::async(std::launch::async, [this] { return display->wait(std::chrono::seconds{100}).has_value(); });
    std::this_thread::sleep_for(std::chrono::milliseconds{30});
    display->wake();
    EXPECT_FALSE(woken.get());
}

TEST_F(WindowTest, TellsWhatAnInputMethodHasNotCommitted) {
    const auto compose = [this](const char* text) {
        SDL_Event made{SDL_TEXTEDITING};
        SDL_strlcpy(made.edit.text, text, sizeof made.edit.text);
        SDL_PushEvent(&made);
        drain();
        return display->takeComposed();
    };
    display->setTextInput(true, kAll);
    EXPECT_EQ(compose("かな"), "かな");
    EXPECT_EQ(compose(""), "");
}

// A click on the window pixel that shows the middle of a panel pixel means that pixel, as far as the window tells
// pixels apart: exactly where the picture is not scaled down, within the window pixel's own cell where it is.
TEST(WindowView, APointMeansThePanelPixelThatIsShownThere) {
    const Size panel{140, 187};
    for (const Size window : {Size{140, 187}, {71, 400}, {100, 133}, {139, 300}, {333, 270}, {280, 374}, {141, 188}}) {
        const WindowView view(panel, window);
        const Rect picture = view.picture();
        const double scale = static_cast<double>(picture.w) / panel.w;
        for (int x = 0; x < panel.w; ++x) {
            const int column = picture.x + static_cast<int>((x + 0.5) * picture.w / panel.w);
            const Point back = view.toPanel(column + 0.5, picture.y + 0.5);
            EXPECT_LE(std::abs(back.x - x), scale >= 1 ? 0 : 0.5 / scale + 0.5) << "window " << window.w << " at " << x;
            EXPECT_TRUE(view.toWindow({x, 0, 1, 1}).contains({column, picture.y}));
        }
        EXPECT_EQ(view.toPanel(-500, picture.y - 1), (Point{0, 0}));
        EXPECT_EQ(view.toPanel(1e9, 1e9), (Point{139, 186}));
    }
}

}  // namespace
}  // namespace host
