#include "platform/host/browser/browser_display.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <list>
#include <utility>
#include <vector>

#include "platform/host/browser/browser_connection.h"
#include "platform/host/browser/browser_http.h"
#include "platform/host/browser/browser_socket.h"
#include "platform/host/browser/vnc_screen.h"

namespace host {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr const char* kNoVnc = "/usr/share/novnc";  // where Debian's package puts it
constexpr std::size_t kMostConnections = 64;        // a browser opens about ten, mostly for the page's files
constexpr auto kRest = 1s;                          // when no connection can be accepted, before trying again

class BrowserDisplay : public Display {
public:
    BrowserDisplay(Listener listener, BrowserPages pages, Size panel, const std::string& password,
                   std::chrono::milliseconds patience)
        : listener_(std::move(listener)),
          pages_(std::move(pages)),
          screen_(panel, password),
          patience_(patience),
          wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    void present(const Framebuffer& shown, Rect area) override { screen_.present(shown, area); }
    std::optional<Input> wait(std::optional<std::chrono::milliseconds> timeout) override;
    void wake() override;
    void flush() override;
    void setTextInput(bool on, Rect near) override;

private:
    [[nodiscard]] bool serve(std::optional<SteadyTime> until);
    [[nodiscard]] int timeToWait(std::optional<SteadyTime> until, SteadyTime now) const;
    void prepare();
    void accept(SteadyTime now);
    [[nodiscard]] bool woken();

    Listener listener_;
    BrowserPages pages_;
    VncScreen screen_;
    std::chrono::milliseconds patience_;
    Descriptor wake_;
    std::list<BrowserConnection> connections_;
    SteadyTime acceptFrom_{};
    std::vector<pollfd> polled_;  ///< wake, listener, then the connections in order
};

std::optional<Input> BrowserDisplay::wait(std::optional<std::chrono::milliseconds> timeout) {
    const SteadyTime now = steady_clock::now();
    std::optional<SteadyTime> until;
    if (timeout) until = now + *timeout;
    for (;;) {
        // Also while input is queued, so that a flood of it shows what it draws.
        flush();
        if (screen_.hasInput()) return screen_.takeInput();
        if (!serve(until)) return {};
    }
}

// Waits for the network and serves it; false when woken or out of time.
bool BrowserDisplay::serve(std::optional<SteadyTime> until) {
    prepare();
    const int ready = poll(polled_.data(), polled_.size(), timeToWait(until, steady_clock::now()));
    const SteadyTime now = steady_clock::now();
    if (ready > 0) {
        if (polled_[0].revents != 0 && woken()) return false;
        auto entry = polled_.begin() + 2;
        for (BrowserConnection& connection : connections_) {
            if ((entry++->revents & (POLLIN | POLLHUP | POLLERR)) != 0) connection.receive(now);
        }
        if (polled_[1].revents != 0) accept(now);
    }
    for (BrowserConnection& connection : connections_) connection.pass(now);
    connections_.remove_if([](const BrowserConnection& connection) { return connection.closed(); });
    return ready != 0 || !until || now < *until;
}

void BrowserDisplay::prepare() {
    const bool accepting = connections_.size() < kMostConnections && steady_clock::now() >= acceptFrom_;
    polled_.clear();
    polled_.push_back({wake_.get(), POLLIN, 0});
    polled_.push_back({accepting ? listener_.socket.get() : -1, POLLIN, 0});
    for (const BrowserConnection& connection : connections_) {
        const int events = (connection.wantsToReceive() ? POLLIN : 0) | (connection.wantsToSend() ? POLLOUT : 0);
        polled_.push_back({connection.socket(), static_cast<short>(events), 0});
    }
}

int BrowserDisplay::timeToWait(std::optional<SteadyTime> until, SteadyTime now) const {
    std::optional<SteadyTime> first = until;
    const auto consider = [&first](SteadyTime time) { first = first ? std::min(*first, time) : time; };
    if (acceptFrom_ > now) consider(acceptFrom_);
    for (const BrowserConnection& connection : connections_) {
        if (connection.deadline()) consider(*connection.deadline());
    }
    if (!first) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*first - now).count();
    constexpr std::int64_t kLongest = 3'600'000;  // an hour; poll takes no more than an int
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, kLongest));
}

void BrowserDisplay::accept(SteadyTime now) {
    Descriptor socket = acceptFrom(listener_);
    if (socket) {
        connections_.emplace_back(std::move(socket), screen_, pages_, patience_, now);
        return;
    }
    // Out of descriptors, say: the listener stays readable, so trying on would be a busy loop.
    acceptFrom_ = now + kRest;
}

bool BrowserDisplay::woken() {
    std::uint64_t count = 0;
    return read(wake_.get(), &count, sizeof count) == sizeof count;
}

void BrowserDisplay::wake() {
    constexpr std::uint64_t kOne = 1;
    // It fails only when the counter is full, and then a wake is due anyway.
    static_cast<void>(!write(wake_.get(), &kOne, sizeof kOne));
}

void BrowserDisplay::flush() {
    for (BrowserConnection& connection : connections_) connection.send(steady_clock::now());
}

void BrowserDisplay::setTextInput(bool on, Rect) { screen_.setTextInput(on); }

bool readPassword(const std::string& file, std::string& password, std::string& error) {
    if (file.empty()) return true;
    std::ifstream stream(file);
    if (std::getline(stream, password) && !password.empty()) return true;
    error = file + ": no password can be read from it";
    return false;
}

}  // namespace

std::unique_ptr<Display> openBrowser(const BrowserSettings& settings, Size panel, PixelFormat /*format*/,
                                     std::string& error) {
    if (!settings.listen.empty() && settings.passwordFile.empty()) {
        error = "--listen " + settings.listen + " needs a password (--password-file FILE)";
        return nullptr;
    }
    std::string password;
    if (!readPassword(settings.passwordFile, password, error)) return nullptr;
    BrowserPages pages(settings.page, kNoVnc);
    if (const auto missing = pages.missing()) {
        error = missing->string() + ": missing, the browser display needs it";
        return nullptr;
    }
    Listener listener = listenOn(settings.listen, settings.port, error);
    if (!listener.socket) return nullptr;
    std::cout << "http://" << listener.host << ':' << listener.port << '/' << std::endl;
    return std::make_unique<BrowserDisplay>(std::move(listener), std::move(pages), panel, password, settings.patience);
}

}  // namespace host
