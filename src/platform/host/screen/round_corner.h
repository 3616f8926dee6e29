#pragma once

namespace host {

/// The antialiased corner of a rounded line or shape. Pixels are counted from the outer corner of the box, so the
/// four corners of a box are one another's mirror images, and its columns and rows may be exchanged.
class RoundCorner {
public:
    /// Both radii around one centre, in pixels; a shape that is filled has the inner radius 0.
    RoundCorner(double outerRadius, double innerRadius) : outer_(outerRadius), inner_(innerRadius) {}

    /// Coverage of the pixel in that column and row: 0 (nothing) to 255 (all), the share of its area that lies
    /// between the two arcs.
    [[nodiscard]] int coverage(int column, int row) const;

private:
    double outer_;
    double inner_;
};

}  // namespace host
