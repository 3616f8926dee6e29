// What the window costs where there is no GPU: processor time for each pointer event of a stroke, and time from the
// start to the first frame, each against a bare SDL2 program. Runs on an X server of its own.

#include <SDL.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "stroke.h"

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int kStrokeRounds = 15;
constexpr int kStartRounds = 25;

SDL_Window* openBareWindow(host::Size size) {
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    SDL_Init(SDL_INIT_VIDEO);
    SDL_Window* window =
        SDL_CreateWindow("bare", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, size.w, size.h, SDL_WINDOW_RESIZABLE);
    SDL_Surface* surface = SDL_GetWindowSurface(window);
    SDL_FillRect(surface, nullptr, SDL_MapRGB(surface->format, 0xFF, 0xFF, 0xFF));
    SDL_UpdateWindowSurface(window);
    return window;
}

double bareStroke(host::Size size) {
    SDL_Window* window = openBareWindow(size);
    const auto nextEvent = [window] {
        SDL_Event event;
        do SDL_WaitEvent(&event);
        while (event.type != SDL_MOUSEMOTION);
        SDL_Surface* surface = SDL_GetWindowSurface(window);
        const SDL_Rect mark{event.motion.x - kMark / 2, event.motion.y - kMark / 2, kMark, kMark};
        SDL_FillRect(surface, &mark, 0);
        SDL_UpdateWindowSurfaceRects(window, &mark, 1);
    };
    return strokeCost(nextEvent);
}

/// Waits until the middle of the X server's screen, black at first, is white.
class FirstFrame {
public:
    FirstFrame() : server_(XOpenDisplay(nullptr)) {}
    FirstFrame(const FirstFrame&) = delete;
    FirstFrame& operator=(const FirstFrame&) = delete;
    ~FirstFrame() { XCloseDisplay(server_); }

    void wait() {
        while ((middle() & kWhite) != kWhite) std::this_thread::sleep_for(std::chrono::microseconds{200});
    }

private:
    static constexpr unsigned long kWhite = 0xFFFFFF;

    unsigned long middle() {
        XImage* image =
            XGetImage(server_, DefaultRootWindow(server_), kMonitor.w / 2, kMonitor.h / 2, 1, 1, AllPlanes, ZPixmap);
        const unsigned long pixel = XGetPixel(image, 0, 0);
        XDestroyImage(image);
        return pixel;
    }

    ::Display* server_;
};

/// Seconds from a program's start to its first frame; it is ended then. Each has an X server to itself.
double secondsToFrame(std::vector<std::string> command) {
    const PrivateScreen server;
    if (!server.answers()) return -1;
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    FirstFrame frame;
    const SteadyClock::time_point begin = SteadyClock::now();
    pid_t child = -1;
    if (posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) return -1;
    frame.wait();
    const double seconds = std::chrono::duration<double>(SteadyClock::now() - begin).count();
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    return seconds;
}

void report(benchmark::State& state, const std::vector<double>& ours, const std::vector<double>& bare) {
    state.SetIterationTime(quickest(ours));
    state.counters["bare_us"] = quickest(bare) * 1e6;
    state.counters["ours_us"] = quickest(ours) * 1e6;
    state.counters["ratio"] = quickest(ours) / quickest(bare);
}

// A panel larger than the monitor, which is scaled, and one that is shown as it is; the bare window is as large as
// the panel is shown.
void strokeEvent(benchmark::State& state) {
    const host::Size panel{static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
    const host::Size shown{static_cast<int>(state.range(2)), static_cast<int>(state.range(3))};
    const PrivateScreen server;
    if (!server.answers()) return state.SkipWithError("Xvfb cannot be started");
    const Hand hand;
    for ([[maybe_unused]] auto round : state) {
        std::vector<double> ours;
        std::vector<double> bare;
        for (int i = 0; i < kStrokeRounds; ++i) {
            ours.push_back(inChild([panel] { return windowStroke(panel); }));
            bare.push_back(inChild([shown] { return bareStroke(shown); }));
        }
        report(state, ours, bare);
    }
}
BENCHMARK(strokeEvent)->Args({1404, 1872, 858, 1144})->Args({758, 1024, 758, 1024})->UseManualTime()->Iterations(1);

void startToFirstFrame(benchmark::State& state) {
    const std::string folder = "/tmp/colour_window_bench." + std::to_string(getpid());
    for ([[maybe_unused]] auto round : state) {
        std::vector<double> ours;
        std::vector<double> bare;
        for (int i = 0; i < kStartRounds; ++i) {
            bare.push_back(secondsToFrame({"/proc/self/exe", "--bare-window"}));
            ours.push_back(secondsToFrame({COLOUR_PROGRAM, "--display", "window", "--storage", folder}));
        }
        if (*std::min_element(bare.begin(), bare.end()) < 0) state.SkipWithError("Xvfb cannot be started");
        report(state, ours, bare);
    }
}
BENCHMARK(startToFirstFrame)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--bare-window") == 0) {
        openBareWindow({858, 1144});
        pause();
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
