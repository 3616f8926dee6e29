#pragma once

#include <vector>

#include "platform/host/base/geometry.h"

namespace host {

/// What of the panel one client has not been sent yet: rectangles that do not overlap, never more than the panel. The
/// newest comes first, so that ink does not wait for a page that is on its way.
class UnsentArea {
public:
    void add(Rect area);

    [[nodiscard]] bool empty() const { return parts_.empty(); }

    /// Takes out the top of the newest rectangle, of at most so many pixels but at least a row.
    [[nodiscard]] Rect takeBand(int mostPixels);

private:
    std::vector<Rect> parts_;  ///< newest last
};

}  // namespace host
