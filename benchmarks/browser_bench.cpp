// Processor time of one stroke move with the panel in a browser, against the window's, at the pace of a hand; the VNC
// client is a process of its own and not counted.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/host/browser/browser_display.h"
#include "stroke.h"

namespace {

using namespace host;

constexpr Size kPanel{1404, 1872};
constexpr int kRounds = 15;
constexpr int kPort = 6170;

void say(int socket, const std::string& bytes) {
    if (send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) _exit(0);
}

void hear(int socket) {
    std::array<char, 65536> buffer;
    if (recv(socket, buffer.data(), buffer.size(), 0) <= 0) _exit(0);
}

// Asks for tight at compression 1, as the page does, and reads what each move has changed before the next.
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
    for (int step = 0;; step = (step + 3) % 256) {
        const char place = static_cast<char>(step);
        say(peer, std::string("\3\1", 2) + whole + std::string("\5\1\1", 3) + place + "\2" + place);
        hear(peer);
        std::this_thread::sleep_for(kEventInterval);
    }
}

double browserStroke() {
    std::string error;
    const BrowserSettings settings{kPort, {}, {}, COLOUR_SOURCE_DIR "/theme/browser"};
    const auto browser = openBrowser(settings, kPanel, PixelFormat::Rgb24, error);
    if (!browser) return 0;
    const pid_t client = fork();
    if (client == 0) drawForever();
    const double cost = strokeOn(*browser, kPanel);
    kill(client, SIGKILL);
    waitpid(client, nullptr, 0);
    return cost;
}

void strokeMove(benchmark::State& state) {
    const PrivateScreen server;
    if (!server.answers()) return state.SkipWithError("Xvfb cannot be started");
    const Hand hand;
    for ([[maybe_unused]] auto round : state) {
        std::vector<double> ours;
        std::vector<double> window;
        for (int i = 0; i < kRounds; ++i) {
            ours.push_back(inChild(browserStroke));
            window.push_back(inChild([] { return windowStroke(kPanel); }));
        }
        state.counters["browser_us"] = quickest(ours) * 1e6;
        state.counters["window_us"] = quickest(window) * 1e6;
        state.counters["ratio"] = quickest(ours) / quickest(window);
    }
}
BENCHMARK(strokeMove)->Iterations(1);

}  // namespace
