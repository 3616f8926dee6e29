#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "platform/host/screen/splines.h"

namespace host {

using lumora::graphics::CubicSpline;
using lumora::graphics::PointD;

struct Piece {
    CubicSpline x;
    CubicSpline y;
};

inline double valueAt(const CubicSpline& s, double t) { return s.a + t * (s.b + t * (s.c + t * s.d)); }
inline PointD pointAt(const Piece& piece, double t) { return {valueAt(piece.x, t), valueAt(piece.y, t)}; }

/// The pieces of a run, all from one calculation.
inline std::vector<Piece> piecesOf(const std::vector<PointD>& run) {
    std::vector<CubicSpline> x(run.size() - 1);
    std::vector<CubicSpline> y(run.size() - 1);
    calculateSplines(run, x, y);
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < x.size(); ++i) pieces.push_back({x[i], y[i]});
    return pieces;
}

/// The pieces that a canvas draws while a pen visits the points: each from at most five points before it and five
/// after, of which only three are known when it is drawn; the last three pieces come when the pen lifts.
inline std::vector<Piece> drawnPieces(const std::vector<PointD>& points) {
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const std::size_t first = i < 5 ? 0 : i - 5;
        const std::size_t known = i + 4 < points.size() ? i + 4 : points.size();
        const std::size_t beyond = std::min(known, i + 6);
        const std::vector<PointD> run(points.begin() + static_cast<std::ptrdiff_t>(first),
                                      points.begin() + static_cast<std::ptrdiff_t>(beyond));
        pieces.push_back(piecesOf(run)[i - first]);
    }
    return pieces;
}

/// Points that far apart on a line from `from`, at an angle in degrees.
inline std::vector<PointD> lineOf(PointD from, double degrees, double length, double apart) {
    const double angle = degrees * std::numbers::pi / 180;
    std::vector<PointD> points;
    for (double at = 0; at <= length; at += apart) {
        points.push_back({from.x + at * std::cos(angle), from.y + at * std::sin(angle)});
    }
    return points;
}

/// Points that far apart on an arc of `turn` degrees.
inline std::vector<PointD> arcOf(PointD centre, double radius, double turn, double apart) {
    std::vector<PointD> points;
    for (double angle = 0; angle <= turn * std::numbers::pi / 180; angle += apart / radius) {
        points.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)});
    }
    return points;
}

}  // namespace host
