// What the window costs where there is no GPU: processor time for each pointer event of a stroke, and time from the
// start to the first frame, each against a bare SDL2 program; and how far the ink is behind the pointer in time. Runs
// on an X server of its own.

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
#include <utility>
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

/// A program in a process of its own.
class Child {
public:
    explicit Child(std::vector<std::string> command) {
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (std::string& argument : command) arguments.push_back(argument.data());
        arguments.push_back(nullptr);
        if (posix_spawn(&process_, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) process_ = -1;
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        if (process_ < 0) return;
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    [[nodiscard]] bool runs() const { return process_ >= 0; }
    [[nodiscard]] double processorSeconds() const {
        clockid_t clock = 0;
        timespec time{};
        clock_getcpuclockid(process_, &clock);
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

private:
    pid_t process_ = -1;
};

/// Seconds from a program's start to its first frame; it is ended then. Each has an X server to itself.
double secondsToFrame(std::vector<std::string> command) {
    const PrivateScreen server;
    if (!server.answers()) return -1;
    FirstFrame frame;
    const SteadyClock::time_point begin = SteadyClock::now();
    const Child program(std::move(command));
    if (!program.runs()) return -1;
    frame.wait();
    return std::chrono::duration<double>(SteadyClock::now() - begin).count();
}

/// A pen on the window in the middle of the screen, and eyes that look for its ink.
class Pen {
public:
    Pen() : server_(XOpenDisplay(nullptr)), root_(DefaultRootWindow(server_)) {}
    Pen(const Pen&) = delete;
    Pen& operator=(const Pen&) = delete;
    ~Pen() { XCloseDisplay(server_); }

    void put(host::Point at) {
        at_ = at;
        XWarpPointer(server_, None, root_, 0, 0, 0, 0, at.x, at.y);
        XSync(server_, False);
    }

    void press() {
        XEvent event{};
        event.xbutton.type = ButtonPress;
        event.xbutton.root = root_;
        event.xbutton.button = Button1;
        event.xbutton.same_screen = True;
        int x = 0, y = 0;
        unsigned mask = 0;
        Window ignored{};
        XQueryPointer(server_, root_, &ignored, &event.xbutton.window, &event.xbutton.x_root, &event.xbutton.y_root, &x,
                      &y, &mask);
        XTranslateCoordinates(server_, root_, event.xbutton.window, event.xbutton.x_root, event.xbutton.y_root,
                              &event.xbutton.x, &event.xbutton.y, &ignored);
        XSendEvent(server_, event.xbutton.window, True, ButtonPressMask, &event);
        XSync(server_, False);
    }

    /// Whether there is ink within two pixels of it.
    bool inked() {
        constexpr int kReach = 2;
        XImage* image = XGetImage(server_, root_, at_.x - kReach, at_.y - kReach, 2 * kReach + 1, 2 * kReach + 1,
                                  AllPlanes, ZPixmap);
        bool found = false;
        for (int i = 0; i < image->height * image->width; ++i)
            found = found || (XGetPixel(image, i % image->width, i / image->width) & 0xFF) < 0x80;
        XDestroyImage(image);
        return found;
    }

private:
    ::Display* server_;
    Window root_;
    host::Point at_{};
};

/// Milliseconds from each move of a pen to its ink, in lines to and fro, of which none meets another.
std::vector<double> inkDelays(Pen& pen, int count) {
    constexpr int kStep = 13, kColumns = 50;  // pixels, points of a line
    std::vector<double> delays;
    SteadyClock::time_point next = SteadyClock::now();
    for (int i = 0; i < count; ++i) {
        std::this_thread::sleep_until(next += kEventInterval);
        const int row = i / kColumns;
        const int column = row % 2 == 0 ? i % kColumns : kColumns - 1 - i % kColumns;
        const SteadyClock::time_point begin = SteadyClock::now();
        pen.put({kMonitor.w / 2 - kStep * kColumns / 2 + kStep * column, 250 + 2 * kStep * row});
        if (i == 0) pen.press();
        while (!pen.inked() && SteadyClock::now() - begin < kEventInterval) {
        }
        delays.push_back(std::chrono::duration<double, std::milli>(SteadyClock::now() - begin).count());
    }
    return delays;
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

// The whole program, as it is started; the first points of a press have no ink of theirs yet.
void pointerToInk(benchmark::State& state) {
    constexpr int kFirst = 5;
    constexpr int kMoves = 1000;
    const std::string folder = "/tmp/colour_window_bench." + std::to_string(getpid());
    for ([[maybe_unused]] auto round : state) {
        const PrivateScreen server;
        if (!server.answers()) return state.SkipWithError("Xvfb cannot be started");
        const Child program({COLOUR_PROGRAM, "--display", "window", "--storage", folder, "--new"});
        FirstFrame().wait();
        std::this_thread::sleep_for(std::chrono::seconds{1});
        Pen pen;
        const double begin = program.processorSeconds();
        std::vector<double> delays = inkDelays(pen, kMoves);
        state.counters["cpu_us"] = (program.processorSeconds() - begin) / kMoves * 1e6;
        delays.erase(delays.begin(), delays.begin() + kFirst);
        std::sort(delays.begin(), delays.end());
        const double median = delays[delays.size() / 2];
        state.counters["p99_ms"] = delays[delays.size() * 99 / 100];
        state.SetIterationTime(median / 1000);
    }
}
BENCHMARK(pointerToInk)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

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
