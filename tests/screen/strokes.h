#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <vector>

#include "platform/host/screen/splines.h"

namespace host {

using lumora::graphics::CubicSpline;
using lumora::graphics::PointD;
using Points = std::vector<PointD>;

struct Piece {
    CubicSpline x;
    CubicSpline y;
};

inline double valueAt(const CubicSpline& s, double t) { return s.a + t * (s.b + t * (s.c + t * s.d)); }
inline PointD pointAt(const Piece& piece, double t) { return {valueAt(piece.x, t), valueAt(piece.y, t)}; }
inline double directionAt(const CubicSpline& s, double t) { return s.b + t * (2 * s.c + t * 3 * s.d); }
inline double apart(PointD a, PointD b) { return std::hypot(a.x - b.x, a.y - b.y); }

/// The pieces of a run, all from one calculation.
inline std::vector<Piece> piecesOf(const Points& run) {
    std::vector<CubicSpline> x(run.size() - 1), y(run.size() - 1);
    calculateSplines(run, x, y);
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < x.size(); ++i) pieces.push_back({x[i], y[i]});
    return pieces;
}

using Place = std::function<Points(const Points&)>;

/// The pieces that a canvas draws while a pen visits the points: each from at most five points before it and five
/// after, of which only three are known when it is drawn; the last three pieces come when the pen lifts.
inline std::vector<Piece> drawnPieces(const Points& points, const Place& place = nullptr) {
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const std::size_t before = std::min<std::size_t>(i, 5);
        const auto first = points.begin() + static_cast<std::ptrdiff_t>(i - before);
        const auto count = static_cast<std::ptrdiff_t>(std::min(before + 4, points.size() - (i - before)));
        const Points run(first, first + count);
        pieces.push_back(piecesOf(place ? place(run) : run)[before]);
    }
    return pieces;
}

}  // namespace host
