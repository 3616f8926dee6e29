#pragma once

namespace host {

/// The distances from a stroke's curve between which coverage falls from all to nothing.
struct Nib {
    /// Half the width of the band: it is a box of 1/√2 pixel blurred by one of 1/√5. On lines at 45 degrees and at
    /// a slope of 1 in 2 all pixels lie at multiples of these distances; with any other band such lines come out
    /// bolder or thinner as they happen to lie between the pixels.
    static constexpr double kWideBox = 0.70711;
    static constexpr double kNarrowBox = 0.44721;
    static constexpr double kHalfBand = (kWideBox + kNarrowBox) / 2;

    explicit Nib(int width) : outer(width / 2.0 + kHalfBand), inner(width / 2.0 - kHalfBand) {}

    double outer;
    double inner;
};

}  // namespace host
