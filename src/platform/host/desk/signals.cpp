#include "platform/host/desk/signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <utility>

namespace host {

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP, SIGPIPE, SIGXFSZ};
constexpr char kAsked = 'a';
constexpr char kFinished = 'f';

/// Where the handler writes. A handler, unlike signals blocked for a waiting thread, also works on the threads that
/// libraries have started before.
std::atomic<int> handlerPipe{-1};
/// When the first signal came, on the steady clock; 0: not yet.
std::atomic<std::int64_t> firstSignal{0};

void send(int pipe, char what) {
    while (write(pipe, &what, 1) < 0 && errno == EINTR) {
    }
}

std::int64_t millisecondsNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000 + 1;
}

void handle(int signal) {
    const int saved = errno;
    std::int64_t first = 0;
    if (firstSignal.compare_exchange_strong(first, millisecondsNow())) {
        send(handlerPipe.load(), kAsked);
    } else if (millisecondsNow() - first > EndSignals::kSameRequest.count()) {
        // It acts when this handler returns, so that the exit status tells which signal it was.
        std::signal(signal, SIG_DFL);
        raise(signal);
    }
    errno = saved;
}

}  // namespace

EndSignals::EndSignals(std::function<void()> ask) : ask_(std::move(ask)) {
    if (pipe2(pipe_.data(), O_CLOEXEC) != 0) return;  // no descriptors left: the signals keep their plain effect
    outerPipe_ = handlerPipe.exchange(pipe_[1]);
    firstSignal = 0;
    watcher_ = std::thread([this] { watch(); });
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        struct sigaction action {};
        action.sa_flags = SA_RESTART;
        action.sa_handler = kSignals[i] == SIGPIPE || kSignals[i] == SIGXFSZ ? SIG_IGN : handle;
        sigaction(kSignals[i], nullptr, &before_[i]);
        const bool nohup = kSignals[i] == SIGHUP && before_[i].sa_handler == SIG_IGN;
        if (!nohup) sigaction(kSignals[i], &action, nullptr);
    }
}

EndSignals::~EndSignals() {
    if (!watcher_.joinable()) return;
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &before_[i], nullptr);
    handlerPipe = outerPipe_;
    send(pipe_[1], kFinished);
    watcher_.join();
    for (const int end : pipe_) close(end);
}

void EndSignals::watch() {
    for (;;) {
        char what = 0;
        const ssize_t got = read(pipe_[0], &what, 1);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0 || what == kFinished) return;
        ask_();
    }
}

}  // namespace host
