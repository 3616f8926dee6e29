#include "platform/host/panel/waveforms.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace host {

namespace {

constexpr std::int64_t kScanRate = 85;  // Hz

struct Timing {
    std::chrono::milliseconds duration;
    int stride;      // scans between two steps of the picture; finer ones cost time and nobody sees them
    unsigned ghost;  // of 256: how much of the previous picture remains
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

constexpr unsigned kWhole = 256;

std::uint8_t mixed(unsigned from, unsigned to, unsigned weight) {
    return static_cast<std::uint8_t>((from * (kWhole - weight) + to * weight + kWhole / 2) / kWhole);
}

// A shade that takes the place of a picture.
constexpr std::array<std::uint8_t, 3> kBlackPixel{};
constexpr std::array<std::uint8_t, 3> kWhitePixel{0xFF, 0xFF, 0xFF};

template <int kChannels>
bool same(const std::uint8_t* a, const std::uint8_t* b) {
    if constexpr (kChannels == 1) return *a == *b;
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
}

}  // namespace

/// How far a flight has come, as a mixture of two pictures:
///
///     elapsed    0 ......... 1/3 ......... 2/3 ......... 1
///     Full       previous -> black -> white -> new            the flash
///     Regular    previous ----------------------> new
///     Fast       previous ----------------------> new in black and white, less the ghost of the previous
struct Waveforms::Phase {
    const std::uint8_t* from = nullptr;  ///< a pixel that takes the place of the previous picture, or null
    const std::uint8_t* to = nullptr;    ///< a pixel that takes the place of the new picture, or null
    unsigned weight = 0;                 ///< of `to`, in parts of kWhole
    bool done;

    Phase(Waveform waveform, Scan elapsed, Scan whole);
};

Waveforms::Phase::Phase(Waveform waveform, Scan elapsed, Scan whole) : done(elapsed == whole) {
    const auto part = static_cast<unsigned>(elapsed * kWhole / whole);
    if (waveform != Waveform::Full) {
        weight = part * (kWhole - timing(waveform).ghost) / kWhole;
        return;
    }
    static constexpr struct {
        const std::uint8_t* from;
        const std::uint8_t* to;
    } kThirds[] = {
        {nullptr, kBlackPixel.data()}, {kBlackPixel.data(), kWhitePixel.data()}, {kWhitePixel.data(), nullptr}};
    const unsigned third = std::min(part * 3 / kWhole, 2U);
    from = kThirds[third].from;
    to = kThirds[third].to;
    weight = part * 3 - third * kWhole;
}

/// Grows around pixels that are added in the order of rows.
class Waveforms::Extent {
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

std::optional<Waveforms::Scan> Waveforms::firstEnd(Scan reached) const {
    std::optional<Scan> end;
    for (const Flight& flight : flights_) {
        if (flight.active && flight.end <= reached) end = end ? std::min(*end, flight.end) : flight.end;
    }
    return end;
}

const std::vector<Rect>& Waveforms::advance(Instant now) {
    changed_.clear();
    const Scan reached = scanReached(now);
    // What waited begins where its forerunner ended, however late this call comes.
    while (const std::optional<Scan> end = firstEnd(reached)) {
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
    for (const Request& request : std::exchange(waiting_, {})) start(absorbWaiting(request), scan);
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

Waveforms::Pixel Waveforms::judge(std::uint8_t owner, Waveform waveform, bool atGoal, bool showsGoal) const {
    if (owner != kFree) return atGoal && waveform <= flights_[owner].waveform ? Pixel::Rests : Pixel::Waits;
    // Black and white leaves alone what is there already, with its ghost; grey drives the ghost out.
    if (waveform == Waveform::Fast) return atGoal ? Pixel::Rests : Pixel::Starts;
    if (waveform == Waveform::Regular && showsGoal) return Pixel::Rests;
    return Pixel::Starts;
}

void Waveforms::start(Request request, Scan scan) {
    const std::optional<std::uint8_t> slot = freeSlot();
    if (!slot) {
        waiting_.push_back(request);
        return;
    }
    Extent started;
    Extent blocked;
    const bool grey = shown_.format() == PixelFormat::Grey8;
    for (int y = request.area.y; y < request.area.bottom(); ++y) {
        if (grey) {
            startRow<1>(request, y, *slot, started, blocked);
        } else {
            startRow<3>(request, y, *slot, started, blocked);
        }
    }
    if (!started.rect().empty()) {
        const Scan scans = scanFrom(timing(request.waveform).duration);
        flights_[*slot] = {true, request.waveform, started.rect(), scan, scan + scans, scan};
    }
    if (!blocked.rect().empty()) waiting_.push_back({blocked.rect(), request.waveform});
}

template <int kChannels>
void Waveforms::startRow(const Request& request, int y, std::uint8_t slot, Extent& started, Extent& blocked) {
    const int left = request.area.x;
    const int bytes = request.area.w * kChannels;
    std::uint8_t* owner = owner_.at(left, y);
    std::uint8_t* to = to_.at(left, y);
    std::uint8_t* from = from_.at(left, y);
    const std::uint8_t* goal = goal_.at(left, y);
    const std::uint8_t* shown = shown_.at(left, y);
    for (int i = 0, x = left; i < bytes; i += kChannels, ++x, ++owner) {
        const bool atGoal = same<kChannels>(goal + i, to + i);
        const Pixel pixel = judge(*owner, request.waveform, atGoal, same<kChannels>(goal + i, shown + i));
        if (pixel == Pixel::Rests) continue;
        if (pixel == Pixel::Waits) {
            blocked.add(x, y);
            continue;
        }
        started.add(x, y);
        *owner = slot;
        std::copy_n(shown + i, kChannels, from + i);
        std::copy_n(goal + i, kChannels, to + i);
    }
}

void Waveforms::drive(std::uint8_t slot, Scan scan) {
    Flight& flight = flights_[slot];
    flight.drawn = scan;
    const Phase phase(flight.waveform, scan - flight.begin, flight.end - flight.begin);
    const bool grey = shown_.format() == PixelFormat::Grey8;
    for (int y = flight.area.y; y < flight.area.bottom(); ++y) {
        if (grey) {
            driveRow<1>(flight, y, slot, phase);
        } else {
            driveRow<3>(flight, y, slot, phase);
        }
    }
    changed_.push_back(flight.area);
}

template <int kChannels>
void Waveforms::driveRow(const Flight& flight, int y, std::uint8_t slot, const Phase& phase) {
    const int left = flight.area.x;
    const int fromStep = phase.from == nullptr ? kChannels : 0;
    const int toStep = phase.to == nullptr ? kChannels : 0;
    const std::uint8_t* from = phase.from == nullptr ? from_.at(left, y) : phase.from;
    const std::uint8_t* to = phase.to == nullptr ? to_.at(left, y) : phase.to;
    const unsigned weight = phase.weight;
    std::uint8_t* owner = owner_.at(left, y);
    std::uint8_t* shown = shown_.at(left, y);
    for (int i = 0; i < flight.area.w; ++i, shown += kChannels, from += fromStep, to += toStep) {
        if (owner[i] != slot) continue;
        if (phase.done) owner[i] = kFree;
        for (int c = 0; c < kChannels; ++c) shown[c] = mixed(from[c], to[c], weight);
    }
}

}  // namespace host
