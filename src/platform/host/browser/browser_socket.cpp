#include "platform/host/browser/browser_socket.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

namespace host {

namespace {

constexpr int kFirstPort = 6080;
constexpr int kLastPort = 6179;
constexpr int kWaitingConnections = 32;

struct AddressDeleter {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using Address = std::unique_ptr<addrinfo, AddressDeleter>;

Address resolve(const std::string& address, int port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
    addrinfo* list = nullptr;
    const int failed = getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &list);
    return Address(failed != 0 ? nullptr : list);
}

Descriptor bound(const addrinfo& address) {
    Descriptor socket(::socket(address.ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket) return socket;
    constexpr int kOn = 1;
    setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &kOn, sizeof kOn);
    if (bind(socket.get(), address.ai_addr, address.ai_addrlen) != 0) return Descriptor();
    if (listen(socket.get(), kWaitingConnections) != 0) return Descriptor();
    return socket;
}

// Every address of the machine has no number of its own: the page is reached by the machine's name.
std::string urlHost(const std::string& address) {
    if (address == "0.0.0.0" || address == "::") {
        std::array<char, 256> name{};
        gethostname(name.data(), name.size() - 1);
        return name.data();
    }
    return address.find(':') == std::string::npos ? address : "[" + address + "]";
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    Descriptor old(std::exchange(fd_, other.release()));
    return *this;
}

Descriptor::~Descriptor() {
    if (fd_ >= 0) close(fd_);
}

int Descriptor::release() { return std::exchange(fd_, -1); }

Listener listenOn(const std::string& address, int port, std::string& error) {
    const std::string numeric = address.empty() ? "127.0.0.1" : address;
    const int last = port == 0 ? kLastPort : port;
    for (int tried = port == 0 ? kFirstPort : port; tried <= last; ++tried) {
        const Address resolved = resolve(numeric, tried);
        if (!resolved) {
            error = "cannot listen on " + numeric + ": not a numeric address";
            return {};
        }
        Descriptor socket = bound(*resolved);
        if (socket) return {std::move(socket), urlHost(numeric), tried};
        error = "cannot listen on " + numeric + " port " + std::to_string(tried) + ": " + std::strerror(errno);
        if (errno != EADDRINUSE) return {};
    }
    return {};
}

Descriptor acceptFrom(const Listener& listener) {
    Descriptor socket(accept4(listener.socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket) return socket;
    // Small updates leave at once, and a machine that vanished is noticed within two minutes.
    constexpr int kOn = 1;
    constexpr int kIdleSeconds = 60;
    constexpr int kProbeSeconds = 10;
    setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &kOn, sizeof kOn);
    setsockopt(socket.get(), SOL_SOCKET, SO_KEEPALIVE, &kOn, sizeof kOn);
    setsockopt(socket.get(), IPPROTO_TCP, TCP_KEEPIDLE, &kIdleSeconds, sizeof kIdleSeconds);
    setsockopt(socket.get(), IPPROTO_TCP, TCP_KEEPINTVL, &kProbeSeconds, sizeof kProbeSeconds);
    return socket;
}

}  // namespace host
