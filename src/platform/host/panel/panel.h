#pragma once

#include "platform/host/desk/clock.h"
#include "platform/host/geometry.h"
#include "platform/host/panel/display.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// How a region of the panel is brought up to date.
enum class Waveform {
    Fast,     ///< one-bit black and white: anything but white (and what is hardly darker) is ink
    Regular,  ///< full quality
    Full,     ///< full quality, with a flash that removes all ghosts
};

/// What the e-ink shows, apart from the screen buffer: only what has been refreshed. Owned by the Toolkit;
/// borrows screen, display and clock.
class Panel {
public:
    Panel(const Framebuffer& screen, Display& display, Clock& clock);

    /// Brings `area` up to date from the screen buffer; clipped to the screen.
    void update(Rect area, Waveform waveform);

    /// Returns when every update in progress has finished.
    void wait();

    /// When the next step of an update in progress is due; nothing when all is done.
    [[nodiscard]] std::optional<Instant> nextStep() const;
    /// Carries out the steps due at the clock's present time.
    void advance();

    /// What a person sees now.
    [[nodiscard]] const Framebuffer& shown() const { return shown_; }

private:
    const Framebuffer& screen_;
    Display& display_;
    Clock& clock_;
    Framebuffer shown_;
};

}  // namespace host
