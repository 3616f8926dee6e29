#pragma once

#include <signal.h>

#include <array>
#include <chrono>
#include <functional>
#include <thread>

namespace host {

/// Turns the signals that ask the program to end (TERM, INT, HUP) into a call from a thread of its own, and keeps a
/// reader that has gone (PIPE) and a file that may not grow (XFSZ) from ending the program. A HUP that was ignored at
/// the start stays ignored, as nohup asks. A second one ends the program at once, as if nothing had been installed: the
/// first may have led into a save that hangs. Signals that follow within kSameRequest are still the first: a terminal
/// that closes and its shell both send one. Of several objects the newest hears the signals; each puts the earlier
/// actions back when it goes.
class EndSignals {
public:
    static constexpr std::chrono::milliseconds kSameRequest{250};

    /// `ask` runs on the watching thread, once, and must be safe there.
    explicit EndSignals(std::function<void()> ask);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    void watch();

    std::function<void()> ask_;
    std::array<struct sigaction, 5> before_{};
    std::array<int, 2> pipe_{-1, -1};  ///< reading and writing end
    int outerPipe_ = -1;
    std::thread watcher_;
};

}  // namespace host
