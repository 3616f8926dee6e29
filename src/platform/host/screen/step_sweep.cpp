#include "platform/host/screen/step_sweep.h"

#include <algorithm>

namespace host {

StepSweep::StepSweep(const StrokePath& path, const Nib& nib) : count_(path.steps().size()) {
    const std::span<const StrokeStep> steps = path.steps();
    for (std::size_t i = 0; i < count_; ++i) {
        strips_[i] =
            StepStrip(steps[i], i > 0 ? &steps[i - 1] : nullptr, i + 1 < count_ ? &steps[i + 1] : nullptr, nib);
        byTop_[i] = &strips_[i];
    }
    std::sort(byTop_.begin(), byTop_.begin() + static_cast<std::ptrdiff_t>(count_),
              [](const StepStrip* a, const StepStrip* b) { return a->top() < b->top(); });
}

std::span<const StepStrip* const> StepSweep::reaching(int y) {
    for (; entered_ < count_ && byTop_[entered_]->top() <= y; ++entered_) reaching_[active_++] = byTop_[entered_];
    const auto end = reaching_.begin() + static_cast<std::ptrdiff_t>(active_);
    const auto passed = [y](const StepStrip* strip) { return strip->bottom() < y; };
    active_ = static_cast<std::size_t>(std::remove_if(reaching_.begin(), end, passed) - reaching_.begin());
    return {reaching_.data(), active_};
}

}  // namespace host
