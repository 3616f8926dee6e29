#pragma once

#include <vector>

#include "platform/host/base/geometry.h"

namespace host {

/// Where the screen buffer may differ from what the panel shows: one run of columns for each row. Written by the
/// screen as it draws, read by the panel as it refreshes, so that a refresh of the whole screen after a small change
/// costs no more than the change.
class Damage {
public:
    explicit Damage(Size size) : rows_(static_cast<std::size_t>(size.h)), bounds_{0, 0, size.w, size.h} {}

    /// Clipped to the screen.
    void add(Rect area);

    /// Calls `visit(part)` for each damaged row part inside `area`, which lies on the screen, and forgets those
    /// parts. Returns the rectangle around them.
    template <typename Visit>
    Rect take(Rect area, Visit visit) {
        Rect around{};
        for (int y = area.y; y < area.bottom(); ++y) {
            Run& row = rows_[static_cast<std::size_t>(y)];
            const Run part{std::max(row.left, area.x), std::min(row.right, area.x + area.w)};
            if (part.empty()) continue;
            const Rect pixels{part.left, y, part.right - part.left, 1};
            visit(pixels);
            around = around.united(pixels);
            row.remove(part);
        }
        return around;
    }

private:
    struct Run {
        int left = 0;
        int right = 0;

        [[nodiscard]] bool empty() const { return left >= right; }
        /// A part out of the middle stays: a run has no holes.
        void remove(const Run& part) {
            if (part.left == left) {
                left = part.right;
            } else if (part.right == right) {
                right = part.left;
            }
        }
    };

    std::vector<Run> rows_;
    Rect bounds_;
};

inline void Damage::add(Rect area) {
    const Rect inside = area.intersected(bounds_);
    for (int y = inside.y; y < inside.bottom(); ++y) {
        Run& row = rows_[static_cast<std::size_t>(y)];
        const Run added{inside.x, inside.x + inside.w};
        row = row.empty() ? added : Run{std::min(row.left, added.left), std::max(row.right, added.right)};
    }
}

}  // namespace host
