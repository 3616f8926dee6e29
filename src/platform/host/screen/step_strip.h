#pragma once

#include "platform/host/screen/columns.h"
#include "platform/host/screen/nib.h"
#include "platform/host/screen/stroke_path.h"

namespace host {

/// A rectangle along a direction, in any position.
///
///      +------------------------------+        ^
///      |                              |        | aside
///      |  before  start --> ahead     |        v
///      +------------------------------+
class Slab {
public:
    Slab() = default;
    /// `unit` is the direction, with a length of 1; a negative `aside` makes it empty.
    Slab(lumora::graphics::PointD start, lumora::graphics::PointD unit, double aside, double before, double ahead);

    /// Its columns in row `y`.
    [[nodiscard]] Columns cut(int y, int screenWidth) const;

    /// Its rows, as y of any value.
    [[nodiscard]] double top() const { return top_; }
    [[nodiscard]] double bottom() const { return bottom_; }

private:
    /// The columns of an endless band: those within `half` of a middle that moves by `perRow` from row to row.
    struct Band {
        double middle;
        double perRow;
        double half;
    };

    double y_;
    double top_;
    double bottom_;
    Band lengthways_;
    Band crossways_;
};

/// Where one step of a stroke matters: around its own curve, as far as the stroke's nib reaches. What is nearest to a
/// joint of two steps belongs to both; what lies beyond is nearer to the other one.
class StepStrip {
public:
    StepStrip() = default;
    /// `before` and `after` are the steps beside it; null at the path's ends, where the nib is round. Borrows `step`.
    StepStrip(const StrokeStep& step, const StrokeStep* before, const StrokeStep* after, const Nib& nib);

    [[nodiscard]] const StrokeStep& step() const { return *step_; }
    [[nodiscard]] double top() const { return outer_.top(); }
    [[nodiscard]] double bottom() const { return outer_.bottom(); }

    /// The columns of row `y` that it may ink.
    [[nodiscard]] Columns outer(int y, int screenWidth) const;
    /// Some that it surely inks wholly, nearly all there are.
    [[nodiscard]] Columns inner(int y, int screenWidth) const;

private:
    const StrokeStep* step_;
    bool round_;
    double outerRadius_;
    double innerRadius_;
    Slab outer_;
    Slab inner_;
};

}  // namespace host
