#include "platform/host/panel/waveforms.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace host {

namespace {

constexpr std::int64_t kScanRate = 85;  // Hz

struct Timing {
    std::chrono::milliseconds duration;
    int stride;  // scans between two steps of the picture; finer ones cost time and nobody sees them
    int ghost;   // of 256: how much of the previous picture remains
};

// Durations as published for e-ink panels and their timing controllers at room temperature and 85 Hz: 120 to 260 ms
// for black and white (the short end is what is used under a pen), 450 ms for sixteen greys, 2,000 ms for the
// initialising flash. The ghost is an estimate by eye.
constexpr Timing kTimings[] = {
    {std::chrono::milliseconds{120}, 3, 16},   // Fast
    {std::chrono::milliseconds{450}, 6, 0},    // Regular
    {std::chrono::milliseconds{2000}, 10, 0},  // Full
};

const Timing& timing(Waveform waveform) { return kTimings[static_cast<int>(waveform)]; }

std::int64_t ceilDivide(std::int64_t value, std::int64_t by) { return (value + by - 1) / by; }

std::int64_t scanReached(Instant at) { return at.count() * kScanRate / 1000; }
std::int64_t scanFrom(Instant at) { return ceilDivide(at.count() * kScanRate, 1000); }
Instant instantOf(std::int64_t scan) { return Instant{ceilDivide(scan * 1000, kScanRate)}; }

constexpr int kWhole = 256;

std::uint8_t mixed(int from, int to, int weight) {
    return static_cast<std::uint8_t>((from * (kWhole - weight) + to * weight + kWhole / 2) / kWhole);
}

// How far a flight has come. The flash drives every pixel to black, then to white, then to the picture.
struct Phase {
    std::optional<int> from;  // a shade that stands for the previous picture
    std::optional<int> to;    // a shade that stands for the new picture
    int weight;               // of kWhole
};

Phase phaseOf(Waveform waveform, std::int64_t elapsed, std::int64_t whole) {
    const int progress = static_cast<int>(elapsed * kWhole / whole);
    if (waveform != Waveform::Full) {
        const int reach = kWhole - timing(waveform).ghost;
        return {std::nullopt, std::nullopt, progress * reach / kWhole};
    }
    const int third = std::min(progress * 3 / kWhole, 2);
    const int weight = progress * 3 - third * kWhole;
    if (third == 0) return {std::nullopt, kBlack, weight};
    if (third == 1) return {kBlack, 0xFF, weight};
    return {0xFF, std::nullopt, weight};
}

// Grows around pixels that are added in the order of rows.
class Extent {
public:
    void add(int x, int y) {
        left_ = std::min(left_, x);
        right_ = std::max(right_, x);
        top_ = std::min(top_, y);
        bottom_ = y;
    }
    [[nodiscard]] Rect rect() const {
        return right_ < left_ ? Rect{} : Rect{left_, top_, right_ - left_ + 1, bottom_ - top_ + 1};
    }

private:
    int left_ = INT_MAX;
    int right_ = INT_MIN;
    int top_ = INT_MAX;
    int bottom_ = INT_MIN;
};

bool samePixel(const Framebuffer& a, const Framebuffer& b, int x, int y) {
    const std::uint8_t* p = a.at(x, y);
    const std::uint8_t* q = b.at(x, y);
    if (a.format() == PixelFormat::Grey8) return *p == *q;
    return p[0] == q[0] && p[1] == q[1] && p[2] == q[2];
}

void copyPixel(const Framebuffer& from, Framebuffer& to, int x, int y) {
    std::copy_n(from.at(x, y), from.bytesPerPixel(), to.at(x, y));
}

}  // namespace

Waveforms::Waveforms(Framebuffer& shown)
    : shown_(shown), from_(shown), to_(shown), goal_(shown), owner_(shown.size(), PixelFormat::Grey8) {}

void Waveforms::request(const Framebuffer& screen, Rect area, Waveform waveform, Instant now) {
    refresh(screen, area, waveform, goal_);
    start(absorbWaiting({area, waveform}), scanFrom(now));
}

std::optional<Instant> Waveforms::nextStep() const {
    std::optional<Scan> next;
    for (const Flight& flight : flights_) {
        if (!flight.active) continue;
        const int stride = timing(flight.waveform).stride;
        const Scan step = std::min(flight.end, (flight.drawn / stride + 1) * stride);
        next = next ? std::min(*next, step) : step;
    }
    if (!next) return std::nullopt;
    return instantOf(*next);
}

const std::vector<Rect>& Waveforms::advance(Instant now) {
    changed_.clear();
    const Scan reached = scanReached(now);
    // What waited begins where its forerunner ended, however late this call comes.
    for (;;) {
        std::optional<Scan> end;
        for (const Flight& flight : flights_) {
            if (flight.active && flight.end <= reached) end = end ? std::min(*end, flight.end) : flight.end;
        }
        if (!end) break;
        finish(*end);
        startWaiting(*end);
    }
    for (std::size_t i = 0; i < flights_.size(); ++i) {
        Flight& flight = flights_[i];
        const Scan step = reached - reached % timing(flight.waveform).stride;
        if (flight.active && step > flight.drawn) drive(static_cast<std::uint8_t>(i), step);
    }
    return changed_;
}

void Waveforms::finish(Scan scan) {
    for (std::size_t i = 0; i < flights_.size(); ++i) {
        Flight& flight = flights_[i];
        if (!flight.active || flight.end != scan) continue;
        drive(static_cast<std::uint8_t>(i), scan);
        flight.active = false;
    }
}

void Waveforms::startWaiting(Scan scan) {
    std::vector<Request> waiting;
    waiting.swap(waiting_);
    for (const Request& request : waiting) start(absorbWaiting(request), scan);
}

// Waiting requests that meet become one, so there are never more of them than fit on the screen side by side.
Waveforms::Request Waveforms::absorbWaiting(Request request) {
    constexpr std::size_t kMostWaiting = 16;
    for (std::size_t i = 0; i < waiting_.size();) {
        const bool meets = !waiting_[i].area.intersected(request.area).empty();
        if (!meets && waiting_.size() < kMostWaiting) {
            ++i;
            continue;
        }
        request = {request.area.united(waiting_[i].area), std::max(request.waveform, waiting_[i].waveform)};
        waiting_.erase(waiting_.begin() + static_cast<std::ptrdiff_t>(i));
        i = 0;
    }
    return request;
}

std::optional<std::uint8_t> Waveforms::freeSlot() const {
    const auto slot = std::find_if(flights_.begin(), flights_.end(), [](const Flight& f) { return !f.active; });
    if (slot == flights_.end()) return std::nullopt;
    return static_cast<std::uint8_t>(slot - flights_.begin());
}

Waveforms::Pixel Waveforms::judge(int x, int y, Waveform waveform) const {
    const std::uint8_t owner = *owner_.at(x, y);
    const bool sameGoal = samePixel(goal_, to_, x, y);
    if (owner == kFree) {
        // Black and white leaves alone what is there already, with its ghost; grey drives the ghost out.
        if (waveform == Waveform::Fast) return sameGoal ? Pixel::Rests : Pixel::Starts;
        if (waveform == Waveform::Regular && samePixel(goal_, shown_, x, y)) return Pixel::Rests;
        return Pixel::Starts;
    }
    return sameGoal && waveform <= flights_[owner].waveform ? Pixel::Rests : Pixel::Waits;
}

void Waveforms::start(Request request, Scan scan) {
    const std::optional<std::uint8_t> slot = freeSlot();
    if (!slot) {
        waiting_.push_back(request);
        return;
    }
    Extent started;
    Extent blocked;
    for (int y = request.area.y; y < request.area.bottom(); ++y) {
        for (int x = request.area.x; x < request.area.right(); ++x) {
            const Pixel pixel = judge(x, y, request.waveform);
            if (pixel == Pixel::Waits) blocked.add(x, y);
            if (pixel != Pixel::Starts) continue;
            started.add(x, y);
            *owner_.at(x, y) = *slot;
            copyPixel(shown_, from_, x, y);
            copyPixel(goal_, to_, x, y);
        }
    }
    if (!started.rect().empty()) {
        const Scan scans = scanFrom(timing(request.waveform).duration);
        flights_[*slot] = {true, request.waveform, started.rect(), scan, scan + scans, scan};
    }
    if (!blocked.rect().empty()) waiting_.push_back({blocked.rect(), request.waveform});
}

void Waveforms::drive(std::uint8_t slot, Scan scan) {
    Flight& flight = flights_[slot];
    flight.drawn = scan;
    const bool done = scan == flight.end;
    const Phase phase = phaseOf(flight.waveform, scan - flight.begin, flight.end - flight.begin);
    const int channels = shown_.bytesPerPixel();
    for (int y = flight.area.y; y < flight.area.bottom(); ++y) {
        for (int x = flight.area.x; x < flight.area.right(); ++x) {
            std::uint8_t& owner = *owner_.at(x, y);
            if (owner != slot) continue;
            if (done) owner = kFree;
            const std::uint8_t* from = from_.at(x, y);
            const std::uint8_t* to = to_.at(x, y);
            std::uint8_t* shown = shown_.at(x, y);
            for (int c = 0; c < channels; ++c)
                shown[c] = mixed(phase.from.value_or(from[c]), phase.to.value_or(to[c]), phase.weight);
        }
    }
    changed_.push_back(flight.area);
}

}  // namespace host
