// One piece of a stroke, 6 pixels long, as a pointer move draws it, against Cairo stroking the same curve.

#include <benchmark/benchmark.h>
#include <cairo.h>

#include <array>
#include <cmath>
#include <vector>

#include "paired.h"
#include "platform/host/screen/screen.h"
#include "platform/host/screen/splines.h"

namespace {

using lumora::graphics::CubicSpline;
using lumora::graphics::PointD;

constexpr host::Size kScreen{1404, 1872};
constexpr int kPieces = 100;  // in one timed run: a stroke of 600 pixels
constexpr int kResolution = 100;
constexpr int kInk = 0x0000FF;

struct Piece {
    CubicSpline x;
    CubicSpline y;
};

/// The pieces of a spiral, 6 pixels from point to point.
std::vector<Piece> stroke() {
    std::vector<PointD> points;
    double angle = 0;
    for (int i = 0; i <= kPieces; ++i) {
        const double radius = 60 + 10 * angle;
        points.push_back({700 + radius * std::cos(angle), 900 + radius * std::sin(angle)});
        angle += 6 / radius;
    }
    std::vector<CubicSpline> x(kPieces);
    std::vector<CubicSpline> y(kPieces);
    host::calculateSplines(points, x, y);
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < x.size(); ++i) pieces.push_back({x[i], y[i]});
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
    const auto width = static_cast<int>(state.range(0));
    const std::vector<Piece> pieces = stroke();
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
BENCHMARK(InkPiece)->ArgName("width")->Arg(5)->Arg(10)->Arg(18)->Iterations(200);

}  // namespace
