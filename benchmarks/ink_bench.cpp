// Pieces of a stroke, straight or bent, as pointer moves draw them, against Cairo stroking the same curves.

#include <benchmark/benchmark.h>
#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "paired.h"
#include "platform/host/screen/screen.h"
#include "platform/host/screen/splines.h"

namespace {

using lumora::graphics::CubicSpline;
using lumora::graphics::PointD;

constexpr host::Size kScreen{1404, 1872};
constexpr int kPieces = 60;  // in one timed run
constexpr int kResolution = 100;
constexpr int kInk = 0x0000FF;

struct Piece {
    CubicSpline x;
    CubicSpline y;
};

/// The pieces of waves from the left to the right, like those of handwriting, `length` pixels from point to point; on
/// the next line below when the screen ends. Straight ones swing by a tenth of that.
std::vector<Piece> stroke(double length, bool bent) {
    constexpr double kLetter = 34;           // pixels; the points of a quick hand, five on a wave
    const double swing = bent ? 1.3 : 0.13;  // radians
    const double wave = std::max(length, kLetter) * 5 / (2 * std::numbers::pi);
    std::vector<Piece> pieces;
    PointD at{100, 200};
    double gone = 0;
    while (pieces.size() < kPieces) {
        std::vector<PointD> points{at};
        while (at.x < kScreen.w - 200 && points.size() <= kPieces) {
            const double angle = swing * std::sin((gone += length) / wave);
            at = {at.x + length * std::cos(angle), at.y + length * std::sin(angle)};
            points.push_back(at);
        }
        std::vector<CubicSpline> x(points.size() - 1);
        std::vector<CubicSpline> y(points.size() - 1);
        host::calculateSplines(points, x, y);
        for (std::size_t i = 0; i < x.size() && pieces.size() < kPieces; ++i) pieces.push_back({x[i], y[i]});
        at = {100, at.y + 200};
    }
    return pieces;
}

/// The piece as the Bézier curve that Cairo takes.
void strokeWithCairo(cairo_t* cairo, const Piece& piece) {
    const auto control = [](const CubicSpline& s) {
        const double h = s.length;
        const double end = s.a + h * (s.b + h * (s.c + h * s.d));
        const double endDirection = s.b + h * (2 * s.c + h * 3 * s.d);
        return std::array{s.a, s.a + s.b * h / 3, end - endDirection * h / 3, end};
    };
    const auto x = control(piece.x);
    const auto y = control(piece.y);
    cairo_move_to(cairo, x[0], y[0]);
    cairo_curve_to(cairo, x[1], y[1], x[2], y[2], x[3], y[3]);
    cairo_stroke(cairo);
}

/// Both draw the whole stroke anew in each run: ours forgets its ink first, as for a new stroke.
void InkPiece(benchmark::State& state) {
    const auto width = static_cast<int>(state.range(2));
    const std::vector<Piece> pieces = stroke(static_cast<double>(state.range(1)), state.range(0) != 0);
    host::Screen screen(kScreen, host::PixelFormat::Rgb24);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kScreen.w, kScreen.h);
    cairo_t* cairo = cairo_create(surface);
    cairo_set_source_rgb(cairo, 1, 1, 1);
    cairo_paint(cairo);
    cairo_set_source_rgb(cairo, 0, 0, 1);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(cairo, width);

    int colour = kInk;
    const auto ours = [&] {
        colour ^= 0xFF0000;  // another ink: nothing of the last run is known
        for (const Piece& piece : pieces) screen.ink(piece.x, piece.y, kResolution, colour, width);
    };
    const auto peer = [&] {
        for (const Piece& piece : pieces) strokeWithCairo(cairo, piece);
    };
    comparePairs(state, ours, peer);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}
BENCHMARK(InkPiece)
    ->ArgNames({"bent", "length", "width"})
    ->ArgsProduct({{0, 1}, {6, 34, 100}, {5, 10, 18}})
    ->Iterations(100);

}  // namespace
