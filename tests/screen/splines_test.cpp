#include <gtest/gtest.h>

#include <random>

#include "strokes.h"

namespace host {
namespace {

double directionAt(const CubicSpline& s, double t) { return s.b + t * (2 * s.c + t * 3 * s.d); }
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
            ASSERT_NEAR(length, std::hypot(run[i + 1].x - run[i].x, run[i + 1].y - run[i].y), 1e-9);
            ASSERT_NEAR(pointAt(piece, 0).x, run[i].x, 1e-9);
            ASSERT_NEAR(pointAt(piece, 0).y, run[i].y, 1e-9);
            ASSERT_NEAR(pointAt(piece, length).x, run[i + 1].x, 1e-9);
            ASSERT_NEAR(pointAt(piece, length).y, run[i + 1].y, 1e-9);
            if (length == 0) continue;
            if (before != nullptr) {
                ASSERT_NEAR(directionAt(before->x, before->x.length), directionAt(piece.x, 0), 1e-7);
                ASSERT_NEAR(directionAt(before->y, before->y.length), directionAt(piece.y, 0), 1e-7);
            }
            before = &piece;
        }
    }
}

TEST(Splines, NeitherLoopNorLeaveTheChordByAQuarter) {
    for (const std::vector<PointD>& run : wildRuns()) {
        const std::vector<Piece> pieces = piecesOf(run);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const double length = pieces[i].x.length;
            if (length == 0) continue;
            const PointD unit{(run[i + 1].x - run[i].x) / length, (run[i + 1].y - run[i].y) / length};
            std::vector<PointD> points;
            for (int k = 0; k <= 40; ++k) {
                const PointD p = pointAt(pieces[i], length * k / 40);
                const double dx = p.x - run[i].x;
                const double dy = p.y - run[i].y;
                const double along = dx * unit.x + dy * unit.y;
                const double past = std::max({-along, along - length, 0.0});
                ASSERT_LE(std::hypot(dy * unit.x - dx * unit.y, past), length / 4 + 1e-9);
                points.push_back({along, dy * unit.x - dx * unit.y});
            }
            for (std::size_t a = 0; a + 1 < points.size(); ++a) {
                for (std::size_t b = a + 2; b + 1 < points.size(); ++b) {
                    const auto side = [](PointD p, PointD q, PointD r) {
                        return (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x);
                    };
                    const PointD &p = points[a], &q = points[a + 1], &r = points[b], &s = points[b + 1];
                    ASSERT_FALSE(side(p, q, r) * side(p, q, s) < -1e-12 && side(r, s, p) * side(r, s, q) < -1e-12);
                }
            }
        }
    }
}

TEST(Splines, AreNaturalAtBothEndsAndSmoothOnEvenPoints) {
    const std::vector<Piece> pieces = piecesOf(arcOf({0, 0}, 60, 60, 6));
    EXPECT_NEAR(bendAt(pieces.front().x, 0), 0, 1e-9);
    EXPECT_NEAR(bendAt(pieces.front().y, 0), 0, 1e-9);
    EXPECT_NEAR(bendAt(pieces.back().x, pieces.back().x.length), 0, 1e-9);
    EXPECT_NEAR(bendAt(pieces.back().y, pieces.back().y.length), 0, 1e-9);
    for (std::size_t i = 3; i + 3 < pieces.size(); ++i) {
        const PointD middle = pointAt(pieces[i], pieces[i].x.length / 2);
        EXPECT_NEAR(std::hypot(middle.x, middle.y), 60, 0.005);
    }
}

TEST(Splines, PointsInALineStayOnIt) {
    const std::vector<double> places{0, 1, 40, 41, 41, 30, 90};
    std::vector<PointD> run;
    for (const double place : places) run.push_back({7 + 3 * place, 5 - 2 * place});
    for (const Piece& piece : piecesOf(run)) {
        for (int k = 0; k <= 10; ++k) {
            const PointD p = pointAt(piece, piece.x.length * k / 10);
            EXPECT_NEAR(2 * (p.x - 7) + 3 * (p.y - 5), 0, 1e-9);
        }
    }
    const Piece straight = piecesOf({{1, 2}, {4, 6}})[0];
    EXPECT_NEAR(pointAt(straight, 2.5).x, 2.5, 1e-12);
    EXPECT_NEAR(pointAt(straight, 2.5).y, 4, 1e-12);
}

TEST(Splines, ATapStaysAtItsPoint) {
    for (const Piece& piece : piecesOf({{3, 4}, {3, 4}, {3, 4}})) {
        EXPECT_EQ(piece.x.length, 0);
        EXPECT_EQ(pointAt(piece, 0).x, 3);
        EXPECT_EQ(pointAt(piece, 0).y, 4);
    }
}

}  // namespace
}  // namespace host
