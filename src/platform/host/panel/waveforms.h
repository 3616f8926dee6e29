#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/host/base/clock.h"
#include "platform/host/base/geometry.h"
#include "platform/host/panel/refresh.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// Plays refreshes in the time that an e-ink panel takes for them. As in a panel's controller, each refresh in
/// flight drives the pixels it has to change, many refreshes run at once, and a pixel that is driven already waits
/// for the end of its refresh; what waits merges. Memory is fixed, however many refreshes are asked for. Owned by
/// the Panel, whose picture it borrows.
///
/// Each pixel stands in five pictures:
///
///     from ------- shown ------> to        goal              owner
///     when its     what is       where     what was asked    the flight that
///     flight began seen now      it leads  for last          drives it, or none
///
/// It is at rest when `to` is its goal and nobody owns it; when somebody does and the goal is another, it waits.
class Waveforms {
public:
    /// `shown` is white.
    explicit Waveforms(Framebuffer& shown);

    /// Brings `area`, which lies inside the screen, to what `screen` holds there now.
    void request(const Framebuffer& screen, Rect area, Waveform waveform, Instant now);

    /// When the picture changes next; nothing when all refreshes have finished.
    [[nodiscard]] std::optional<Instant> nextStep() const;

    /// Changes the picture to what the panel shows at `now`. Returns the areas that have changed, valid until the
    /// next call.
    const std::vector<Rect>& advance(Instant now);

private:
    /// Scans of the panel since the program's start.
    using Scan = std::int64_t;

    /// A refresh under way.
    struct Flight {
        bool active = false;
        Waveform waveform = Waveform::Fast;
        Rect area{};
        Scan begin = 0;
        Scan end = 0;
        Scan drawn = 0;  ///< the scan that the picture shows
    };

    struct Request {
        Rect area{};
        Waveform waveform = Waveform::Fast;
    };

    /// What a request means to a pixel.
    enum class Pixel { Rests, Starts, Waits };

    class Extent;
    struct Phase;

    [[nodiscard]] Pixel judge(std::uint8_t owner, Waveform waveform, bool atGoal, bool showsGoal) const;
    [[nodiscard]] std::optional<std::uint8_t> freeSlot() const;
    [[nodiscard]] Request absorbWaiting(Request request);
    void start(Request request, Scan scan);
    template <int kChannels>
    void startRow(const Request& request, int y, std::uint8_t slot, Extent& started, Extent& blocked);
    void startWaiting(Scan scan);
    /// When the first of the flights ends that have come to their end by then.
    [[nodiscard]] std::optional<Scan> firstEnd(Scan reached) const;
    void finish(Scan scan);
    void drive(std::uint8_t slot, Scan scan);
    template <int kChannels>
    void driveRow(const Flight& flight, int y, std::uint8_t slot, const Phase& phase);

    // A controller runs 16 to 64 refreshes at once; a pixel's owner fits a byte.
    static constexpr std::uint8_t kFree = 0xFF;
    std::array<Flight, 63> flights_{};
    std::vector<Request> waiting_;
    std::vector<Rect> changed_;

    Framebuffer& shown_;
    Framebuffer from_;
    Framebuffer to_;
    Framebuffer goal_;
    Framebuffer owner_;  ///< a slot of `flights_`, or kFree
};

}  // namespace host
