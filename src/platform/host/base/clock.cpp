#include "platform/host/base/clock.h"

#include <algorithm>
#include <thread>

namespace host {

Clock::Clock() : virtual_(false), start_(std::chrono::steady_clock::now()) {}

Clock::Clock(long epochSeconds) : virtual_(true), epochStart_(epochSeconds) {}

Instant Clock::now() const {
    if (virtual_) return virtualNow_;
    return std::chrono::duration_cast<Instant>(std::chrono::steady_clock::now() - start_);
}

long Clock::epochSeconds() const {
    using std::chrono::seconds;
    if (virtual_) return epochStart_ + std::chrono::duration_cast<seconds>(virtualNow_).count();
    return std::chrono::duration_cast<seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

void Clock::advanceTo(Instant instant) {
    if (virtual_) {
        virtualNow_ = std::max(virtualNow_, instant);
        return;
    }
    std::this_thread::sleep_until(start_ + instant);
}

}  // namespace host
