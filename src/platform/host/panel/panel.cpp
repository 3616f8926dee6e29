#include "platform/host/panel/panel.h"

namespace host {

Panel::Panel(const Framebuffer& screen, Display& display, Clock& clock, bool waveforms, Damage* damage)
    : screen_(screen), display_(display), clock_(clock), damage_(damage), shown_(screen.size(), screen.format()) {
    if (waveforms) waveforms_.emplace(shown_);
}

void Panel::update(Rect area, Waveform waveform) {
    const Rect visible = area.intersected(screen_.bounds());
    if (visible.empty()) return;
    if (!waveforms_) {
        refreshAtOnce(visible);
        return;
    }
    advance();
    waveforms_->request(screen_, visible, waveform, clock_.now());
}

void Panel::refreshAtOnce(Rect area) {
    const auto show = [this](Rect part) { refresh(screen_, part, Waveform::Regular, shown_); };
    if (damage_ == nullptr) {
        show(area);
    } else {
        area = damage_->take(area, show);
    }
    if (!area.empty()) display_.present(shown_, area);
}

void Panel::wetInk(const WetInk* ink) {
    if (!waveforms_) display_.wetInk(ink);
}

void Panel::wait() {
    while (const std::optional<Instant> next = nextStep()) {
        clock_.advanceTo(*next);
        advance();
        display_.flush();
    }
}

std::optional<Instant> Panel::nextStep() const {
    if (!waveforms_) return std::nullopt;
    return waveforms_->nextStep();
}

void Panel::advance() {
    if (!waveforms_) return;
    for (const Rect& area : waveforms_->advance(clock_.now())) display_.present(shown_, area);
}

}  // namespace host
