#include "platform/host/screen/pixel_fit.h"

#include <gtest/gtest.h>

#include <numbers>

#include "screen/strokes.h"

namespace host {
namespace {

using std::numbers::pi;

Points wholePixels(const Points& way) {
    Points points;
    for (const PointD p : way) points.push_back({std::round(p.x), std::round(p.y)});
    return points;
}

std::vector<Piece> drawnBy(PixelFit& path, const Points& points) {
    return drawnPieces(points, [&path](const Points& run) {
        const auto placed = path.place(run);
        return Points(placed.begin(), placed.end());
    });
}

std::vector<Piece> drawnFromScript(const Points& way) {
    PixelFit path;
    return drawnBy(path, wholePixels(way));
}

constexpr double kRadius = 150;

/// Once round and a little more, so that the ends do not count.
Points circle(PointD centre, double step) {
    Points way;
    for (double angle = 0; angle < 2 * pi + 8 * step / kRadius; angle += step / kRadius)
        way.push_back({centre.x + kRadius * std::cos(angle), centre.y + kRadius * std::sin(angle)});
    return way;
}

/// Root mean square of what is left of the curve's distance from the circle without its mean and its first four
/// harmonics: what the hand did not mean.
double roughness(const std::vector<Piece>& pieces, PointD centre, double* farthest) {
    constexpr int kDirections = 720;
    std::vector<double> stray(kDirections);
    for (const auto& piece : pieces) {
        for (double t = 0; t < piece.x.length; t += 0.2) {
            const PointD p = pointAt(piece, t);
            const double turns = std::atan2(p.y - centre.y, p.x - centre.x) / (2 * pi) + 0.5;
            double& there = stray[static_cast<std::size_t>(turns * kDirections) % kDirections];
            there = apart(p, centre) - kRadius;
            *farthest = std::max(*farthest, std::abs(there));
        }
    }
    for (int harmonic = 0; harmonic <= 4; ++harmonic) {
        for (const double phase : {0.0, pi / 2}) {
            const auto wave = [&](int i) {
                return std::cos(2 * pi * harmonic * i / kDirections - (harmonic ? phase : 0));
            };
            double amount = 0;
            for (int i = 0; i < kDirections; ++i) amount += stray[static_cast<std::size_t>(i)] * wave(i);
            amount *= (harmonic ? 2.0 : 1.0) / kDirections;
            for (int i = 0; i < kDirections; ++i) stray[static_cast<std::size_t>(i)] -= amount * wave(i);
        }
    }
    double squares = 0;
    for (const double each : stray) squares += each * each;
    return std::sqrt(squares / kDirections);
}

class PixelFitApart : public testing::TestWithParam<double> {};
INSTANTIATE_TEST_SUITE_P(Pixels, PixelFitApart, testing::Values(2, 4, 8, 14, 24, 40));

TEST_P(PixelFitApart, CirclesShowNoPixelsAndStayWhereThePenWas) {
    for (const PointD centre : {PointD{300, 300}, PointD{300.4, 300.7}, PointD{300.1, 300.45}}) {
        const Points way = circle(centre, GetParam());
        double farthest = 0;
        EXPECT_LE(roughness(drawnFromScript(way), centre, &farthest), 0.16);
        EXPECT_LE(farthest, 1.25);
    }
}

TEST(PixelFit, KeepsTheTipsOfAZigzag) {
    constexpr double kLeg = 30;
    for (const double step : {1.0, 2.0, 3.0, 5.0, 7.5}) {
        for (double angle = 0; angle < 1.5; angle += 0.1) {
            PointD at{50.3, 90.6};
            Points way{at}, tips;
            for (int leg = 0; leg < 6; ++leg, tips.push_back(at)) {
                const double heading = angle + (leg % 2 ? pi / 4 : -pi / 4);
                for (double gone = 0; gone < kLeg; gone += step) {
                    at = {at.x + step * std::cos(heading), at.y + step * std::sin(heading)};
                    way.push_back(at);
                }
            }
            const std::vector<Piece> pieces = drawnFromScript(way);
            for (const PointD tip : tips) {
                double nearest = 1e9;
                for (const Piece& piece : pieces)
                    for (double t = 0; t <= piece.x.length; t += 0.1)
                        nearest = std::min(nearest, apart(pointAt(piece, t), tip));
                EXPECT_LE(nearest, 1.5) << step << " apart at " << angle;
            }
        }
    }
}

TEST(PixelFit, EndsAreExactPiecesMeetAndPointsStayInTheirPixels) {
    const Points points = wholePixels(circle({300.4, 300.7}, 5));
    const std::vector<Piece> pieces = drawnFromScript(points);
    const auto endOf = [&](std::size_t i) { return pointAt(pieces[i], pieces[i].x.length); };
    EXPECT_EQ(apart(pointAt(pieces.front(), 0), points.front()), 0);
    EXPECT_NEAR(apart(endOf(pieces.size() - 1), points.back()), 0, 1e-9);
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        EXPECT_NEAR(apart(endOf(i), pointAt(pieces[i + 1], 0)), 0, 1e-9) << i;
        EXPECT_EQ(apart(wholePixels({endOf(i)})[0], points[i + 1]), 0) << i;
    }
}

TEST(PixelFit, ATapStaysADot) {
    for (const Piece& piece : drawnFromScript({{7, 8}, {7, 8}, {7, 8}})) {
        EXPECT_EQ(piece.x.length, 0);
        EXPECT_EQ(apart(pointAt(piece, 0), {7, 8}), 0);
    }
}

TEST(PixelFit, PointsBetweenThePixelsAreExact) {
    PixelFit path;
    const Points run{{0, 0}, {5.25, 1}, {10, 3}, {15, 6}, {20, 10.5}, {25, 15}};
    const auto placed = path.place(run);
    for (std::size_t i = 0; i < run.size(); ++i) EXPECT_EQ(apart(placed[i], run[i]), 0) << i;
}

}  // namespace
}  // namespace host
