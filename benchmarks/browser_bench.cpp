// Processor time of one stroke move with the panel in a browser, against the window's, at the pace of a hand; the
// browser is a process of its own and not counted.
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/websocket.hpp>
#include <csignal>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/host/browser/admission.h"
#include "platform/host/browser/browser_display.h"
#include "stroke.h"

namespace {

using namespace host;
using boost::asio::ip::tcp;
namespace http = boost::beast::http;
namespace websocket = boost::beast::websocket;

constexpr Size kPanel{1404, 1872};
constexpr int kRounds = 15;
constexpr int kPort = 6170;

std::string pointerMessage(char action, float place) {
    std::string message{1, action, 0, 1, 0, 0, 0};
    message.resize(message.size() + 2 * sizeof place);
    for (const int i : {7, 11}) std::memcpy(message.data() + i, &place, sizeof place);
    return message;
}

/// Offers compression, as browsers do, and reads what each move has changed before the next.
void draw() {
    boost::asio::io_context io;
    websocket::stream<tcp::socket> socket(io);
    socket.next_layer().connect({boost::asio::ip::address_v4::loopback(), kPort});
    socket.next_layer().set_option(tcp::no_delay(true));
    websocket::permessage_deflate deflate;
    deflate.client_enable = true;
    socket.set_option(deflate);
    socket.set_option(websocket::stream_base::decorator([](websocket::request_type& request) {
        request.set(http::field::origin, "http://127.0.0.1");
        request.set(http::field::cookie, Admission(keptToken(), {}, {}).cookie(kPort));
    }));
    socket.handshake("127.0.0.1", "/panel");
    socket.binary(true);
    std::array<unsigned char, 70000> heard;  // all of a message has room, else the library inflates it wrong
    const auto hear = [&] {
        std::size_t bytes = 0;
        do bytes += socket.read_some(boost::asio::buffer(heard) + bytes);
        while (!socket.is_message_done());
    };
    for (int rows = 0; rows < kPanel.h;) {
        hear();
        if (heard[0] == 2) rows += heard[7] | heard[8] << 8;
    }
    socket.write(boost::asio::buffer(pointerMessage(0, 512)));
    for (int step = 0;; step = (step + 3) % 256) {
        socket.write(boost::asio::buffer(pointerMessage(1, static_cast<float>(512 + step))));
        hear();
        std::this_thread::sleep_for(kEventInterval);
    }
}

double browserStroke() {
    std::string error;
    BrowserSettings settings;
    settings.port = kPort;
    settings.page = COLOUR_SOURCE_DIR "/theme/browser";
    const auto browser = openBrowser(settings, kPanel, PixelFormat::Rgb24, error);
    if (!browser) return 0;
    const pid_t client = fork();
    if (client == 0) {
        draw();
        _exit(0);
    }
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
