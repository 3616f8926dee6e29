#include "platform/host/window/connection.h"

#include <SDL_syswm.h>
#include <dlfcn.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <limits>

namespace host {

namespace {

/// That X's library has met the end of the connection inside one of its calls. By default it ends the process there.
std::atomic<bool> broken{false};

int noteBroken(Display* /*screen*/) {
    broken = true;
    return 0;
}
void goOn(Display* /*screen*/, void* /*context*/) {}

/// A function of a library that SDL has loaded; null where either is missing.
template <typename Function>
Function* loaded(const char* library, const char* name) {
    void* const handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    return handle == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(handle, name));
}

constexpr const char* kX = "libX11.so.6";

/// Whether the library comes back from a call in which the connection breaks; older ones cannot.
bool handleErrors(Display* screen, XIOErrorHandler handler, XIOErrorExitHandler exitHandler) {
    auto* const setHandler = loaded<decltype(XSetIOErrorHandler)>(kX, "XSetIOErrorHandler");
    auto* const setExitHandler = loaded<decltype(XSetIOErrorExitHandler)>(kX, "XSetIOErrorExitHandler");
    if (setHandler == nullptr || setExitHandler == nullptr) return false;
    setHandler(handler);
    setExitHandler(screen, exitHandler, nullptr);
    return true;
}

}  // namespace

Connection::Connection() : wakeEvent_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Connection::~Connection() {
    if (screen_ != nullptr && !lost()) handleErrors(static_cast<Display*>(screen_), nullptr, nullptr);
    close(wakeEvent_);
}

void Connection::watch(SDL_Window* window) {
    SDL_SysWMinfo system;
    SDL_VERSION(&system.version);
    if (SDL_GetWindowWMInfo(window, &system) == SDL_FALSE) return;
    if (system.subsystem == SDL_SYSWM_X11) {
        auto* const socketOf = loaded<decltype(XConnectionNumber)>(kX, "XConnectionNumber");
        if (socketOf != nullptr) socket_ = socketOf(system.info.x11.display);
        broken = false;
        if (handleErrors(system.info.x11.display, noteBroken, goOn)) screen_ = system.info.x11.display;
    } else if (system.subsystem == SDL_SYSWM_WAYLAND) {
        auto* const socketOf = loaded<int(wl_display*)>("libwayland-client.so.0", "wl_display_get_fd");
        if (socketOf != nullptr) socket_ = socketOf(system.info.wl.display);
    }
}

bool Connection::lost() const {
    if (broken) return true;
    pollfd socket{socket_, POLLRDHUP, 0};
    return poll(&socket, 1, 0) > 0;
}

bool Connection::wait(std::optional<std::chrono::milliseconds> timeout) const {
    constexpr std::int64_t kLongest = std::numeric_limits<int>::max();
    const auto patience = timeout ? static_cast<int>(std::clamp<std::int64_t>(timeout->count(), 0, kLongest)) : -1;
    std::array<pollfd, 2> sources{{{socket_, POLLIN | POLLRDHUP, 0}, {wakeEvent_, POLLIN, 0}}};
    if (poll(sources.data(), sources.size(), patience) <= 0) return false;
    std::uint64_t count = 0;
    return sources[1].revents != 0 && read(wakeEvent_, &count, sizeof count) > 0;
}

void Connection::wake() const {
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(wakeEvent_, &one, sizeof one);
}

}  // namespace host
