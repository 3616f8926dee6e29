#pragma once

#include <optional>

#include "platform/host/base/clock.h"
#include "platform/host/base/geometry.h"
#include "platform/host/panel/display.h"
#include "platform/host/panel/refresh.h"
#include "platform/host/panel/waveforms.h"
#include "platform/host/screen/damage.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// What the e-ink shows, apart from the screen buffer: only what has been refreshed. Owned by the Toolkit;
/// borrows screen, display and clock.
class Panel {
public:
    /// With `waveforms` a refresh shows what it shows on an e-ink panel, in the time that it takes there; without, all
    /// colours at once. `damage` tells where the screen has been drawn on; null: anywhere.
    Panel(const Framebuffer& screen, Display& display, Clock& clock, bool waveforms = false, Damage* damage = nullptr);
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    /// Brings `area` up to date from the screen buffer as it is now; clipped to the screen.
    void update(Rect area, Waveform waveform);

    /// What the pen has still to draw, for the display to show meanwhile (see Display::wetInk). E-ink shows none.
    void wetInk(const WetInk* ink);

    /// Returns when every update in progress has finished. A virtual clock is moved on to that instant.
    void wait();

    /// When the next step of an update in progress is due; nothing when all is done.
    [[nodiscard]] std::optional<Instant> nextStep() const;
    /// Carries out the steps due at the clock's present time.
    void advance();

    /// What a person sees now.
    [[nodiscard]] const Framebuffer& shown() const { return shown_; }

private:
    void refreshAtOnce(Rect area);

    const Framebuffer& screen_;
    Display& display_;
    Clock& clock_;
    Damage* damage_;
    Framebuffer shown_;
    std::optional<Waveforms> waveforms_;
};

}  // namespace host
