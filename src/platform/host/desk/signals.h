#pragma once

#include <signal.h>

#include <array>
#include <functional>
#include <thread>

namespace host {

/// Turns the signals that ask the program to end (TERM, INT, HUP) into a call from a thread of its own, and keeps a
/// reader that has gone (PIPE) from ending the program. A HUP that was ignored at the start stays ignored, as
/// nohup asks. Of several objects the newest hears the signals; each puts the earlier actions back when it goes.
class EndSignals {
public:
    /// `ask` runs on the watching thread, once for each signal, and must be safe there.
    explicit EndSignals(std::function<void()> ask);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    void watch();

    std::function<void()> ask_;
    std::array<struct sigaction, 4> before_{};
    std::array<int, 2> pipe_{-1, -1};  ///< reading and writing end
    int outerPipe_ = -1;
    std::thread watcher_;
};

}  // namespace host
