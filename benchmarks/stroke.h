#pragma once

// The processor time of a stroke on a display, as fast as a hand moves. Each measure has a process of its own.

#include <SDL.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/host/panel/panel.h"
#include "platform/host/window/window_display.h"

constexpr int kMark = 24;                                  // pixels, what one event of a stroke refreshes
constexpr std::chrono::microseconds kEventInterval{8333};  // 120 Hz
constexpr int kWarmUp = 20;                                // events
constexpr int kEvents = 60;                                // measured in each round
constexpr host::Size kMonitor{1920, 1200};

inline double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// The quickest of many rounds is what the program itself needs; other programs only ever add to it.
inline double quickest(const std::vector<double>& rounds) { return *std::min_element(rounds.begin(), rounds.end()); }

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
inline double inChild(const std::function<double()>& measure) {
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
inline double strokeCost(const std::function<void()>& nextEvent) {
    for (int i = 0; i < kWarmUp; ++i) nextEvent();
    const double begin = processorSeconds();
    for (int i = 0; i < kEvents; ++i) nextEvent();
    return (processorSeconds() - begin) / kEvents;
}

/// Processor seconds for each move of a stroke on the display, of which each refreshes a mark. The pointer is down.
inline double strokeOn(host::Display& display, host::Size size) {
    host::Framebuffer screen(size, host::PixelFormat::Rgb24);
    host::Clock clock;
    host::Panel panel(screen, display, clock);
    panel.update(screen.bounds(), host::Waveform::Full);
    return strokeCost([&] {
        std::optional<host::Input> input;
        // As the event loop does: what is there already first, then at leisure.
        do {
            input = display.wait(std::chrono::milliseconds{0});
            if (!input) input = display.wait(std::nullopt);
        } while (!input || input->kind != host::Input::Kind::PointerMove);
        const host::Rect mark{input->at.x - kMark / 2, input->at.y - kMark / 2, kMark, kMark};
        const host::Rect visible = mark.intersected(screen.bounds());
        for (int y = visible.y; y < visible.bottom(); ++y)
            std::memset(screen.at(visible.x, y), 0, static_cast<std::size_t>(visible.w) * 3);
        panel.update(mark, host::Waveform::Fast);
    });
}

/// The same in a window; somebody moves the pointer.
inline double windowStroke(host::Size size) {
    std::string error;
    const std::unique_ptr<host::Display> display = host::openWindow(size, "stroke", {}, error);
    if (!display) return 0;
    SDL_Event press{};
    press.type = SDL_MOUSEBUTTONDOWN;
    press.button.button = SDL_BUTTON_LEFT;
    SDL_PushEvent(&press);
    return strokeOn(*display, size);
}
