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
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/host/panel/panel.h"
#include "platform/host/panel/window_display.h"

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int kMark = 24;                                  // pixels, what one event of a stroke refreshes
constexpr std::chrono::microseconds kEventInterval{8333};  // 120 Hz
constexpr int kWarmUp = 20;                                // events
constexpr int kEvents = 60;                                // measured in each round
constexpr int kStrokeRounds = 15;
constexpr int kStartRounds = 25;
constexpr host::Size kMonitor{1920, 1200};

double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// The quickest of many rounds is what the program itself needs; other programs only ever add to it.
double quickest(const std::vector<double>& rounds) { return *std::min_element(rounds.begin(), rounds.end()); }

/// An X server without a screen, for as long as this lives; sets DISPLAY.
class PrivateScreen {
public:
    PrivateScreen() {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) return;
        server_ = fork();
        if (server_ == 0) serve(ends[1]);
        close(ends[1]);
        int number = -1;
        FILE* told = fdopen(ends[0], "r");
        answers_ = std::fscanf(told, "%d", &number) == 1;
        std::fclose(told);
        const std::string display = ':' + std::to_string(number);
        setenv("DISPLAY", display.c_str(), 1);
        setenv("SDL_VIDEODRIVER", "x11", 1);
    }
    PrivateScreen(const PrivateScreen&) = delete;
    PrivateScreen& operator=(const PrivateScreen&) = delete;
    ~PrivateScreen() {
        if (server_ <= 0) return;
        kill(server_, SIGTERM);
        waitpid(server_, nullptr, 0);
    }

    [[nodiscard]] bool answers() const { return answers_; }

private:
    [[noreturn]] static void serve(int displayNumberTo) {
        const std::string number = std::to_string(displayNumberTo);
        const std::string size = std::to_string(kMonitor.w) + 'x' + std::to_string(kMonitor.h) + "x24";
        execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", size.c_str(), "-nolisten", "tcp",
               static_cast<char*>(nullptr));
        _exit(127);
    }

    pid_t server_ = -1;
    bool answers_ = false;
};

/// Runs `measure` in a process of its own, whose SDL and processor time are its own too.
double inChild(const std::function<double()>& measure) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) return 0;
    const pid_t child = fork();
    if (child == 0) {
        const double result = measure();
        _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    }
    close(ends[1]);
    double result = 0;
    if (read(ends[0], &result, sizeof result) != sizeof result) result = 0;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return result;
}

/// Moves the pointer in circles over the middle of the screen, 120 times a second, while it lives.
class Hand {
public:
    Hand() : process_(fork()) {
        if (process_ != 0) return;
        SDL_Init(SDL_INIT_VIDEO);
        for (int i = 0;; ++i) {
            const double angle = i * 0.05;
            SDL_WarpMouseGlobal(kMonitor.w / 2 + static_cast<int>(200 * SDL_cos(angle)),
                                kMonitor.h / 2 + static_cast<int>(200 * SDL_sin(angle)));
            std::this_thread::sleep_for(kEventInterval);
        }
    }
    Hand(const Hand&) = delete;
    Hand& operator=(const Hand&) = delete;
    ~Hand() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }

private:
    pid_t process_;
};

/// Processor seconds for each event; `nextEvent` waits for one and answers it.
double strokeCost(const std::function<void()>& nextEvent) {
    for (int i = 0; i < kWarmUp; ++i) nextEvent();
    const double begin = processorSeconds();
    for (int i = 0; i < kEvents; ++i) nextEvent();
    return (processorSeconds() - begin) / kEvents;
}

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

double windowStroke(host::Size size) {
    std::string error;
    const std::unique_ptr<host::Display> display = host::openWindow(size, host::PixelFormat::Rgb24, "stroke", error);
    if (!display) return 0;
    host::Framebuffer screen(size, host::PixelFormat::Rgb24);
    host::Clock clock;
    host::Panel panel(screen, *display, clock);
    panel.update(screen.bounds(), host::Waveform::Full);
    SDL_Event press{};
    press.type = SDL_MOUSEBUTTONDOWN;
    press.button.button = SDL_BUTTON_LEFT;
    SDL_PushEvent(&press);
    const auto nextEvent = [&] {
        std::optional<host::Input> input;
        // As the event loop does: what is there already first, then at leisure.
        do {
            input = display->wait(std::chrono::milliseconds{0});
            if (!input) input = display->wait(std::nullopt);
        } while (!input || input->kind != host::Input::Kind::PointerMove);
        const host::Rect mark{input->at.x - kMark / 2, input->at.y - kMark / 2, kMark, kMark};
        const host::Rect visible = mark.intersected(screen.bounds());
        for (int y = visible.y; y < visible.bottom(); ++y)
            std::memset(screen.at(visible.x, y), 0, static_cast<std::size_t>(visible.w) * 3);
        panel.update(mark, host::Waveform::Fast);
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
