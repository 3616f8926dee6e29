#include <gtest/gtest.h>

#include <random>

#include "screen/strokes.h"

namespace host {
namespace {

double directionAt(const CubicSpline& s, double t) { return s.b + t * (2 * s.c + t * 3 * s.d); }
double apart(PointD a, PointD b) { return std::hypot(a.x - b.x, a.y - b.y); }
double bendAt(const CubicSpline& s, double t) { return 2 * s.c + 6 * s.d * t; }

/// Runs of points with jumps, turns and repeats, as a shaking hand and a slow machine give them.
std::vector<std::vector<PointD>> wildRuns() {
    std::mt19937 random(7);
    std::vector<std::vector<PointD>> runs;
    for (int i = 0; i < 500; ++i) {
        std::vector<PointD> run{{100, 100}};
        for (std::size_t n = 2 + random() % 14; run.size() < n;) {
            const double reach = std::pow(10, random() % 3);
            const auto offset = [&] { return reach * (static_cast<double>(random() % 2001) / 1000 - 1); };
            run.push_back(random() % 6 == 0 ? run.back() : PointD{run.back().x + offset(), run.back().y + offset()});
        }
        runs.push_back(run);
    }
    return runs;
}

TEST(Splines, PassThroughEveryPointWithoutAKink) {
    for (const std::vector<PointD>& run : wildRuns()) {
        const std::vector<Piece> pieces = piecesOf(run);
        const Piece* before = nullptr;
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const Piece& piece = pieces[i];
            const double length = piece.x.length;
            ASSERT_NEAR(length, apart(run[i], run[i + 1]), 1e-9);
            ASSERT_NEAR(apart(pointAt(piece, 0), run[i]), 0, 1e-9);
            ASSERT_NEAR(apart(pointAt(piece, length), run[i + 1]), 0, 1e-9);
            if (length == 0) continue;
            if (before != nullptr) {
                ASSERT_NEAR(directionAt(before->x, before->x.length), directionAt(piece.x, 0), 1e-7);
                ASSERT_NEAR(directionAt(before->y, before->y.length), directionAt(piece.y, 0), 1e-7);
            }
            before = &piece;
        }
    }
}

/// Positive where `r` lies to the left of the way from `p` to `q`.
double side(PointD p, PointD q, PointD r) { return (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x); }

/// In coordinates along the chord and across it.
TEST(Splines, NeitherLoopNorLeaveTheChordByAQuarter) {
    for (const std::vector<PointD>& run : wildRuns()) {
        const std::vector<Piece> pieces = piecesOf(run);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const double length = pieces[i].x.length;
            if (length == 0) continue;
            const PointD unit{(run[i + 1].x - run[i].x) / length, (run[i + 1].y - run[i].y) / length};
            std::vector<PointD> points;
            for (int k = 0; k <= 40; ++k) {
                const PointD at = pointAt(pieces[i], length * k / 40);
                const double dx = at.x - run[i].x;
                const double dy = at.y - run[i].y;
                const PointD p{dx * unit.x + dy * unit.y, dy * unit.x - dx * unit.y};
                ASSERT_LE(std::hypot(p.y, std::max({-p.x, p.x - length, 0.0})), length / 4 + 1e-9);
                points.push_back(p);
            }
            for (std::size_t a = 0; a + 1 < points.size(); ++a) {
                for (std::size_t b = a + 2; b + 1 < points.size(); ++b) {
                    const PointD &p = points[a], &q = points[a + 1], &r = points[b], &s = points[b + 1];
                    ASSERT_FALSE(side(p, q, r) * side(p, q, s) < -1e-12 && side(r, s, p) * side(r, s, q) < -1e-12);
                }
            }
        }
    }
}

TEST(Splines, AreNaturalAtBothEndsAndSmoothOnEvenPoints) {
    const std::vector<Piece> pieces = piecesOf(arcOf({0, 0}, 60, 60, 6));
    for (const CubicSpline& first : {pieces.front().x, pieces.front().y}) EXPECT_NEAR(bendAt(first, 0), 0, 1e-9);
    for (const CubicSpline& last : {pieces.back().x, pieces.back().y}) EXPECT_NEAR(bendAt(last, last.length), 0, 1e-9);
    for (std::size_t i = 3; i + 3 < pieces.size(); ++i) {
        EXPECT_NEAR(apart(pointAt(pieces[i], pieces[i].x.length / 2), {0, 0}), 60, 0.005);
    }
}

}  // namespace
}  // namespace host
