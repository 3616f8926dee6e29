#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "platform/host/screen/step_strip.h"

namespace host {

/// The steps of a path that matter to a row, for rows from the top down: the work follows the ink, however long the
/// path is. Borrows the path.
class StepSweep {
public:
    StepSweep(const StrokePath& path, const Nib& nib);

    /// The steps that matter to row `y`. Every call is for a lower row (a larger `y`) than the one before.
    [[nodiscard]] std::span<const StepStrip* const> reaching(int y);

private:
    std::array<StepStrip, StrokePath::kMostSteps> strips_;
    std::array<const StepStrip*, StrokePath::kMostSteps> byTop_;
    std::array<const StepStrip*, StrokePath::kMostSteps> reaching_;
    std::size_t count_;
    std::size_t entered_ = 0;
    std::size_t active_ = 0;
};

}  // namespace host
