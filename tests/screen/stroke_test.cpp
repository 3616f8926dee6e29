#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <random>

#include "platform/host/screen/screen.h"
#include "screen/pixels.h"
#include "screen/strokes.h"

namespace host {
namespace {

/// Points that far apart on a way that sets out at that angle and turns by `bend` for each pixel of its length.
Points wayOf(PointD at, double angle, double bend, double length, double step) {
    Points points{at};
    for (double gone = step; gone <= length; gone += step, angle += step * bend) {
        at = {at.x + step * std::cos(angle), at.y + step * std::sin(angle)};
        points.push_back(at);
    }
    return points;
}

/// Runs of points with jumps, turns and repeats, as a shaking hand and a slow machine give them.
std::vector<Points> wildRuns() {
    std::mt19937 random(7);
    std::vector<Points> runs(500, {{100, 100}});
    for (Points& run : runs) {
        for (std::size_t n = 2 + random() % 14; run.size() < n;) {
            const double reach = std::pow(10, random() % 3);
            const auto offset = [&] { return reach * (static_cast<double>(random() % 2001) / 1000 - 1); };
            run.push_back(random() % 6 == 0 ? run.back() : PointD{run.back().x + offset(), run.back().y + offset()});
        }
    }
    return runs;
}

/// Whether the curve meets itself, at an s and a t with b + c (s + t) + d (s² + st + t²) = 0 in x and in y.
bool loops(const Piece& piece) {
    const auto& [x, y] = piece;
    const double determinant = x.c * y.d - x.d * y.c;
    const double sum = (x.d * y.b - x.b * y.d) / determinant;
    const double squares = (x.b * y.c - x.c * y.b) / determinant;
    const double distance = std::sqrt(4 * squares - 3 * sum * sum);
    return distance > 1e-6 && sum - distance > 0 && sum + distance < 2 * x.length;
}

/// How far a point is from the straight line between two others.
double fromChord(PointD at, PointD from, PointD to) {
    const PointD chord{to.x - from.x, to.y - from.y};
    const double share =
        ((at.x - from.x) * chord.x + (at.y - from.y) * chord.y) / (chord.x * chord.x + chord.y * chord.y);
    const double near = std::clamp(share, 0.0, 1.0);
    return apart(at, {from.x + near * chord.x, from.y + near * chord.y});
}

TEST(Splines, PassThroughEveryPointWithoutKinkLoopOrBulgeAndAreNaturalAtBothEnds) {
    for (const Points& run : wildRuns()) {
        Piece before{};
        const PointD* point = run.data();
        for (const Piece& piece : piecesOf(run)) {
            const auto& [x, y] = piece;
            const PointD from = *point++, to = *point;
            ASSERT_NEAR(apart(pointAt(piece, 0), from), 0, 1e-9);
            ASSERT_NEAR(x.length, apart(from, to), 1e-9);
            ASSERT_NEAR(apart(pointAt(piece, x.length), to), 0, 1e-9);
            if (x.length == 0) continue;
            const bool first = before.x.length == 0;
            ASSERT_NEAR(first ? x.c : x.b - directionAt(before.x, before.x.length), 0, 1e-7);
            ASSERT_NEAR(first ? y.c : y.b - directionAt(before.y, before.y.length), 0, 1e-7);
            ASSERT_FALSE(loops(piece));
            for (int k = 1; k < 40; ++k)
                ASSERT_LE(fromChord(pointAt(piece, x.length * k / 40), from, to), x.length / 4 + 1e-9);
            before = piece;
        }
        for (const CubicSpline& s : {before.x, before.y}) ASSERT_NEAR(2 * s.c + 6 * s.d * s.length, 0, 1e-7);
    }
}

TEST(Splines, AreSmoothOnEvenPoints) {
    const std::vector<Piece> pieces = piecesOf(wayOf({0, 0}, 0, 1.0 / 60, 60, 6));
    const PointD centre{3, 3 / std::tan(0.05)};
    for (std::size_t i = 3; i + 3 < pieces.size(); ++i)
        EXPECT_NEAR(apart(pointAt(pieces[i], pieces[i].x.length / 2), centre), apart({0, 0}, centre), 0.005);
}

constexpr Size kSheet{700, 700};

Rect ink(Screen& screen, const Piece& piece, int width, Rgb colour = kBlack) {
    return screen.ink(piece.x, piece.y, /*resolution=*/100, colour, width);
}

/// How far each pixel of the sheet lies from the curve, as far as within that reach of it.
std::vector<double> distancesFrom(const std::vector<Piece>& pieces, double reach) {
    std::vector<double> distances(kSheet.w * kSheet.h, 1e9);
    for (const Piece& piece : pieces) {
        const int parts = std::max(1, static_cast<int>(20 * piece.x.length));
        for (int i = 0; i <= parts; ++i) {
            const PointD p = pointAt(piece, piece.x.length * i / parts);
            for (int y = static_cast<int>(p.y - reach); y <= p.y + reach + 1; ++y) {
                for (int x = static_cast<int>(p.x - reach); x <= p.x + reach + 1; ++x) {
                    double& distance = distances[static_cast<std::size_t>(y * kSheet.w + x)];
                    distance = std::min(distance, std::hypot(x - p.x, y - p.y));
                }
            }
        }
    }
    return distances;
}

/// Coverage of a pixel at that distance from the curve: the stroke's edge, averaged over the two boxes in turn.
double coverageAt(double distance, int width) {
    constexpr int kSamples = 64;
    if (distance > width / 2.0 + 1) return 0;
    double sum = 0;
    for (int i = 0; i < kSamples; ++i) {
        const double shift = ((i + 0.5) / kSamples - 0.5) / std::sqrt(5.0);
        sum += std::clamp((width / 2.0 - distance + shift) * std::numbers::sqrt2 + 0.5, 0.0, 1.0);
    }
    return sum / kSamples;
}

/// Levels by which a pixel differs at most, in any channel, from the whole stroke drawn in one go.
double unlikeness(const std::vector<Piece>& pieces, int width) {
    std::vector<double> coverages = distancesFrom(pieces, width / 2.0 + 3);
    for (double& each : coverages) each = coverageAt(each, width);
    double most = 0;
    for (const auto& [format, colour] : {std::pair(PixelFormat::Grey8, 0), std::pair(PixelFormat::Rgb24, 0x0066C0)}) {
        Screen screen(kSheet, format);
        for (const Piece& piece : pieces) ink(screen, piece, width, colour);
        const std::uint8_t* byte = screen.pixels().at(0, 0);
        for (const double coverage : coverages)
            for (int shift = 16; shift > 16 - 8 * screen.pixels().bytesPerPixel(); shift -= 8)
                most = std::max(most, std::abs(*byte++ - 255 + coverage * (255 - (colour >> shift & 0xFF))));
    }
    return most;
}

class InkApart : public testing::TestWithParam<double> {};
INSTANTIATE_TEST_SUITE_P(Pixels, InkApart, testing::Values(2.0, 6.0, 12.0, 34.0));

TEST_P(InkApart, PiecesMakeOneEvenStroke) {
    const double step = GetParam();
    const PointD dot{350.3, 349.6};
    for (const Points& points : {Points{dot, dot}, wayOf({350.3, 289.6}, 0, 1.0 / 60, 345, step),
                                 wayOf({350.3, 49.6}, 0, 1.0 / 300, 1830, step), wayOf({50.2, 60.7}, 0.3, 0, 600, step),
                                 wayOf({50, 60}, std::atan(0.5), 0, 600, step),
                                 wayOf({50, 60}, std::atan(1), 0, 600, step), wayOf({350.5, 40}, 1.24, 0, 600, step)}) {
        for (const int width : {2, 5, 10, 18})
            EXPECT_LE(unlikeness(drawnPieces(points), width), 2.5) << width << " wide to " << points.back().x;
    }
}

TEST(Ink, SharpTurnsMatchTheWholeStroke) {
    const Points turns{{60, 60}, {72, 61}, {63, 66}, {64, 80},   {64, 80},   {90, 80},  {70, 82},
                       {70, 95}, {58, 93}, {66, 84}, {120, 100}, {121, 101}, {119, 102}};
    for (const int width : {1, 3, 18}) EXPECT_LE(unlikeness(drawnPieces(turns), width), 5) << width;
}

TEST(Ink, IsForgottenWhereAnythingElseIsDrawn) {
    const Piece piece = piecesOf({{20.5, 30}, {80.5, 30}})[0];
    const Rect area{40, 20, 30, 30};
    const Point corner{area.x, area.y};
    const BitmapPtr white = Screen(area.size(), PixelFormat::Rgb24).capture({0, 0, 30, 30});
    const std::vector<std::uint8_t> mask(900, 255);
    const std::function<void(Screen&)> primitives[] = {
        [&](Screen& screen) { ink(screen, piece, 30, kWhite); },
        [&](Screen& screen) { screen.fill(area, kWhite); },
        [&](Screen& screen) { screen.draw(corner, *white); },
        [&](Screen& screen) { screen.frame({.box = area, .thickness = 15, .radius = 0, .colour = kWhite}); },
        [&](Screen& screen) {
            screen.tint(corner, Coverage{mask.data(), 30, area.size()}, area, kWhite);
        },
        [&](Screen& screen) { screen.clear(); }};
    for (const auto& primitive : primitives) {
        Screen screen({100, 60}, PixelFormat::Rgb24);
        ink(screen, piece, 8);
        const Framebuffer before = screen.pixels();
        primitive(screen);
        EXPECT_EQ(colourAt(screen.pixels(), {50, 30}), kWhite);
        ink(screen, piece, 8);
        EXPECT_EQ(firstDifference(before, screen.pixels()), kNowhere) << &primitive - primitives;
    }
}

TEST(Ink, TheScreenEdgeCutsAndTheRectangleHoldsAllChanges) {
    constexpr int kMargin = 60;
    for (int i = 0; i < 200; ++i) {
        Rect changed{};
        const auto inked = [&](int margin) {
            const auto place = [&](int salt) { return (i * salt) % 149 - 50 + 0.37 * (i % 3) + margin; };
            Screen screen({50 + 2 * margin, 41 + 2 * margin}, PixelFormat::Grey8);
            changed = {};
            for (const Piece& piece :
                 piecesOf({{place(37), place(53)}, {place(71), place(29)}, {place(97), place(11)}}))
                changed = changed.united(ink(screen, piece, 1 + i % 20));
            return screen;
        };
        const Screen large = inked(kMargin);
        Screen small = inked(0);
        ASSERT_EQ(firstDifference(small.pixels(), large.pixels(), 1, kMargin), kNowhere) << i;
        small.fill(changed, kWhite);
        ASSERT_EQ(small.pixels(), Screen({50, 41}, PixelFormat::Grey8).pixels()) << i;
    }
}

}  // namespace
}  // namespace host
