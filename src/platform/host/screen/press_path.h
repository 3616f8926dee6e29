#pragma once

#include <span>
#include <vector>

#include "platform/host/base/geometry.h"
#include "platform/splines.h"

namespace host {

/// Where the pen was during the press in progress, finer than the whole pixels that the application gets. What the
/// display knows is remembered; for the rest, as in a script, neighbours tell. Owned by the Toolkit.
class PressPath {
public:
    PressPath();

    /// A press begins: forgets the one before.
    void begin() { samples_.clear(); }
    /// The pen was at `at` (panel pixels, whole numbers in the pixels' middles) when the application got `delivered`.
    void add(Point delivered, lumora::graphics::PointD at) { samples_.push_back({delivered, at}); }

    /// The run, with each whole-pixel point moved to where the pen was within its pixel. The choice for a point is the
    /// same in all runs in which two points follow it and five come before it, or the press begins or ends: pieces from
    /// different runs meet. Other points stay. Valid until the next call.
    std::span<const lumora::graphics::PointD> place(std::span<const lumora::graphics::PointD> run);

private:
    struct Sample {
        Point delivered;
        lumora::graphics::PointD at;
    };

    std::vector<Sample> samples_;
    std::vector<lumora::graphics::PointD> placed_;
};

}  // namespace host
