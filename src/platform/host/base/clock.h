#pragma once

#include <chrono>
#include <optional>

namespace host {

using Milliseconds = std::chrono::milliseconds;
/// Time since the program's start.
using Instant = std::chrono::milliseconds;

/// The one clock. A virtual clock stands still until it is told to advance; a real one is the machine's.
class Clock {
public:
    /// The machine's clock.
    Clock();
    /// A virtual clock that starts at that many seconds since the epoch.
    explicit Clock(long epochSeconds);

    [[nodiscard]] bool isVirtual() const { return virtual_; }
    [[nodiscard]] Instant now() const;
    /// Seconds since the epoch.
    [[nodiscard]] long epochSeconds() const;

    /// Virtual: time jumps to `instant` if it lies ahead. Real: sleeps until then.
    void advanceTo(Instant instant);

private:
    bool virtual_;
    long epochStart_ = 0;
    Instant virtualNow_{0};
    std::chrono::steady_clock::time_point start_;
};

}  // namespace host
