// Processor time of one stroke move with the panel in a browser, against the window's. Each moves the pointer, changes
// 24 x 24 pixels and shows them; the VNC client is a process of its own and not counted.
#include <SDL.h>
#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>

#include "paired.h"
#include "platform/host/panel/browser_display.h"
#include "platform/host/panel/window_display.h"

namespace {

using namespace host;
using namespace std::chrono_literals;

constexpr Size kPanel{1404, 1872};
constexpr int kMovesPerRound = 50;
constexpr int kPort = 6170;

void say(int socket, const std::string& bytes) {
    if (send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) _exit(0);
}

void hear(int socket) {
    std::array<char, 65536> buffer;
    if (recv(socket, buffer.data(), buffer.size(), 0) <= 0) _exit(0);
}

// Asks for tight at compression 1, as the page does, and moves on whenever the last move has been shown.
[[noreturn]] void drawForever() {
    const int peer = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    while (connect(peer, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) usleep(10000);
    hear(peer);
    say(peer, "RFB 003.008\n");
    hear(peer);
    say(peer, "\1");
    hear(peer);
    say(peer, "\1");
    hear(peer);
    say(peer, std::string("\2\0\0\3\0\0\0\7\xFF\xFF\xFF\x01\xFF\xFF\xFF\x20", 16));
    const std::string whole("\0\0\0\0\x05\x7C\x07\x50", 8);
    say(peer, std::string("\3\0", 2) + whole);
    pollfd more{peer, POLLIN, 0};
    while (poll(&more, 1, 500) > 0) hear(peer);  // the first picture
    say(peer, std::string("\5\1\2\0\2\0", 6));   // the press
    for (int step = 0;; step = (step + 1) % 256) {
        const char place = static_cast<char>(step);
        say(peer, std::string("\3\1", 2) + whole + std::string("\5\1\1", 3) + place + "\2" + place);
        hear(peer);
    }
}

/// A screen of its own for the window where the machine has none.
pid_t startScreen() {
    if (std::getenv("DISPLAY") != nullptr) return 0;
    std::array<int, 2> number{};
    if (pipe(number.data()) != 0) return 0;
    const pid_t screen = fork();
    if (screen == 0) {
        close(number[0]);
        const std::string descriptor = std::to_string(number[1]);
        dup2(open("/dev/null", O_RDWR), 2);
        execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "1600x2000x24", nullptr);
        _exit(127);
    }
    close(number[1]);
    std::string display = ":";
    char digit = 0;
    while (read(number[0], &digit, 1) == 1 && digit != '\n') display += digit;
    setenv("DISPLAY", display.c_str(), 1);
    close(number[0]);
    return screen;
}

double processorMicroseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

class Stroke {
public:
    explicit Stroke(Display& display) : display_(display), shown_(kPanel, PixelFormat::Rgb24) {}

    void move() {
        std::optional<Input> input;
        while (!input || input->kind != Input::Kind::PointerMove) input = display_.wait(1s);
        const Rect area{input->at.x, input->at.y, 24, 24};
        for (int y = area.y; y < area.bottom(); ++y) *shown_.at(area.x + y % 24, y) ^= 0xFF;
        display_.present(shown_, area);
        display_.flush();
    }

private:
    Display& display_;
    Framebuffer shown_;
};

void pushMouse(Uint32 type, int step) {
    SDL_Event event{};
    event.type = type;
    if (type == SDL_MOUSEMOTION) {
        event.motion.x = 256 + step % 256;
        event.motion.y = 512 + step % 256;
    } else {
        event.button.button = SDL_BUTTON_LEFT;
    }
    SDL_PushEvent(&event);
}

void compareMoves(benchmark::State& state) {
    std::string error;
    const BrowserSettings settings{kPort, {}, {}, COLOUR_SOURCE_DIR "/theme/browser"};
    const auto browser = openBrowser(settings, kPanel, PixelFormat::Rgb24, error);
    const auto window = browser ? openWindow(kPanel, PixelFormat::Rgb24, "Colour", error) : nullptr;
    if (!window) {
        state.SkipWithError(error.c_str());
        return;
    }
    Stroke inBrowser(*browser);
    Stroke inWindow(*window);
    inBrowser.move();
    pushMouse(SDL_MOUSEBUTTONDOWN, 0);
    int step = 0;
    std::vector<double> ours;
    std::vector<double> peer;
    for (auto _ : state) {
        const double start = processorMicroseconds();
        for (int i = 0; i < kMovesPerRound; ++i) inBrowser.move();
        const double middle = processorMicroseconds();
        for (int i = 0; i < kMovesPerRound; ++i) {
            pushMouse(SDL_MOUSEMOTION, ++step);
            inWindow.move();
        }
        ours.push_back((middle - start) / kMovesPerRound);
        peer.push_back((processorMicroseconds() - middle) / kMovesPerRound);
    }
    reportRatio(state, ours, peer);
}

void strokeMove(benchmark::State& state) {
    const pid_t client = fork();
    if (client == 0) drawForever();
    const pid_t screen = startScreen();
    compareMoves(state);
    for (const pid_t process : {client, screen}) {
        if (process <= 0) continue;
        kill(process, SIGTERM);
        waitpid(process, nullptr, 0);
    }
}
BENCHMARK(strokeMove)->Name("browser: one stroke move, processor time against the window's")->Iterations(100);

}  // namespace
