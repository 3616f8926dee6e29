#include "platform/host/screen/splines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace host {

namespace {

using lumora::graphics::CubicSpline;
using lumora::graphics::PointD;

constexpr double kCoincident = 1e-6;  // pixels; points that close are one point

PointD operator+(PointD p, PointD q) { return {p.x + q.x, p.y + q.y}; }
PointD operator-(PointD p, PointD q) { return {p.x - q.x, p.y - q.y}; }
PointD operator*(double factor, PointD p) { return {factor * p.x, factor * p.y}; }

/// The pieces of a run while they are being worked out. What is known of a piece stands in its own coefficients, so no
/// memory is needed beside the caller's:
///
///     after              b                                     c                     d
///     layChords          -                                     -                     -
///     solveDirections    direction at the piece's first point  q (see there)         -
///     limitDirections    the same, at most 1 long              q                     -
///     finish             the same                              its curve, from both directions
class Run {
public:
    Run(std::span<const PointD> points, std::span<CubicSpline> x, std::span<CubicSpline> y)
        : points_(points), x_(x), y_(y) {}

    void layChords() {
        for (std::size_t i = 0; i + 1 < points_.size(); ++i) {
            const PointD chord = points_[i + 1] - points_[i];
            const double distance = std::hypot(chord.x, chord.y);
            const double length = distance > kCoincident ? distance : 0;
            x_[i] = {points_[i].x, 0, 0, 0, length};
            y_[i] = {points_[i].y, 0, 0, 0, length};
        }
    }

    /// Solves for the directions D of the natural spline, where piece i is h[i] long and heads along H[i]. The curve
    /// has no bend at its ends and the same one on both sides of every point between:
    ///
    ///     2 D[0] + D[1] = 3 H[0]
    ///     h[i] D[i-1] + 2 (h[i-1] + h[i]) D[i] + h[i-1] D[i+1] = 3 (h[i] H[i-1] + h[i-1] H[i])
    ///     D[n-1] + 2 D[n] = 3 H[n-1]
    ///
    /// On the way forward each row takes in the one before it and becomes D[i] = r[i] - q[i] D[i+1], with r in the
    /// place of the direction; on the way back that gives D. Pieces without length are left out.
    void solveDirections() {
        std::size_t before = next(0);
        if (before == pieces()) return;
        setDirection(before, 1.5 * heading(before));
        x_[before].c = 0.5;
        for (std::size_t i = next(before + 1); i != pieces(); before = i, i = next(i + 1)) {
            const double pivot = 2 * (length(before) + length(i)) - length(i) * x_[before].c;
            const PointD sum = 3 * (length(i) * heading(before) + length(before) * heading(i));
            x_[i].c = length(before) / pivot;
            setDirection(i, (1 / pivot) * (sum - length(i) * direction(before)));
        }
        last_ = (1 / (2 - x_[before].c)) * (3 * heading(before) - direction(before));
        PointD after = last_;
        for (std::size_t i = pieces(); i-- > 0;) {
            if (length(i) == 0) continue;
            after = direction(i) - x_[i].c * after;
            setDirection(i, after);
        }
    }

    /// A curve that leaves and meets its points no faster than its chord neither loops nor strays from the chord by
    /// more than a quarter of it. The two ends follow their neighbours, so they stay natural.
    void limitDirections() {
        const std::size_t first = next(0);
        if (first == pieces()) return;
        std::size_t last = first;
        for (std::size_t i = next(first + 1); i != pieces(); last = i, i = next(i + 1)) {
            const double speed = std::hypot(x_[i].b, y_[i].b);
            if (speed > 1) setDirection(i, (1 / speed) * direction(i));
        }
        if (first == last) return;
        setDirection(first, 0.5 * (3 * heading(first) - direction(next(first + 1))));
        last_ = 0.5 * (3 * heading(last) - direction(last));
    }

    /// The cubic of each piece that leaves and arrives in its two directions: with t along the chord from 0 to h,
    /// c = (3 H - 2 D[i] - D[i+1]) / h and d = (D[i] + D[i+1] - 2 H) / h².
    void finish() {
        PointD end = last_;
        for (std::size_t i = pieces(); i-- > 0;) {
            if (length(i) == 0) continue;
            const double h = length(i);
            const PointD start = direction(i);
            const PointD c = (1 / h) * (3 * heading(i) - 2 * start - end);
            const PointD d = (1 / (h * h)) * (start + end - 2 * heading(i));
            x_[i].c = c.x;
            y_[i].c = c.y;
            x_[i].d = d.x;
            y_[i].d = d.y;
            end = start;
        }
    }

private:
    [[nodiscard]] std::size_t pieces() const { return points_.size() - 1; }
    [[nodiscard]] double length(std::size_t i) const { return x_[i].length; }
    [[nodiscard]] PointD heading(std::size_t i) const { return (1 / length(i)) * (points_[i + 1] - points_[i]); }
    [[nodiscard]] PointD direction(std::size_t i) const { return {x_[i].b, y_[i].b}; }

    void setDirection(std::size_t i, PointD direction) {
        x_[i].b = direction.x;
        y_[i].b = direction.y;
    }

    /// The first piece from `i` on that has a length.
    [[nodiscard]] std::size_t next(std::size_t i) const {
        while (i < pieces() && length(i) == 0) ++i;
        return i;
    }

    std::span<const PointD> points_;
    std::span<CubicSpline> x_;
    std::span<CubicSpline> y_;
    PointD last_{};  ///< direction at the last point
};

}  // namespace

void calculateSplines(std::span<const PointD> run, std::span<CubicSpline> x, std::span<CubicSpline> y) {
    if (run.size() < 2) return;
    Run pieces(run, x, y);
    pieces.layChords();
    pieces.solveDirections();
    pieces.limitDirections();
    pieces.finish();
}

}  // namespace host
