#pragma once

#include <span>

namespace lumora::graphics {

/// A point in screen pixels.
struct PointD {
    double x;
    double y;
};

/// One cubic piece of one coordinate: a + b·t + c·t² + d·t³ for t from 0 to `length`. The parameter is the
/// length of the chord between the piece's two points, in pixels, so pieces of uneven points stay calm.
struct CubicSpline {
    double a;
    double b;
    double c;
    double d;
    double length;
};

class CubicSplines {
public:
    /// The smooth curve through a run of at least two points, with natural ends. Piece j of `x` and `y`
    /// covers the run from its point j to its point j + 1. A point in the middle of a pixel stands for that
    /// pixel: the curve passes through it where its neighbours tell that the pen was, less than half a pixel
    /// away. It passes exactly through other points. Points may repeat. `x` and `y` have
    /// room for run.size() - 1 pieces each; nothing is allocated for runs of up to 16 points.
    static void calculateXYSplines(std::span<const PointD> run, std::span<CubicSpline> x, std::span<CubicSpline> y);

    /// Draws one piece into the screen buffer as a line of `width` pixels with round ends, antialiased.
    /// Pieces that follow one another in one colour join without a seam. `resolution` is the largest
    /// number of straight steps the piece is drawn in.
    static void drawXYSpline(const CubicSpline& x, const CubicSpline& y, int resolution, int colour, int width);
};

}  // namespace lumora::graphics
