#pragma once

/// The codes in which DrawFrameCertifiedEx is told what to draw.

/// The sides of a frame.
inline constexpr int kLeftSide = 1;
inline constexpr int kTopSide = 2;
inline constexpr int kRightSide = 4;
inline constexpr int kBottomSide = 8;
inline constexpr int kAllSides = 15;

/// The rounded corners of a frame, and whether its inside takes the line's colour.
inline constexpr int kTopLeftCorner = 1;
inline constexpr int kTopRightCorner = 2;
inline constexpr int kBottomRightCorner = 4;
inline constexpr int kBottomLeftCorner = 8;
inline constexpr int kAllCorners = 15;
inline constexpr int kFilled = 16;

/// Stand for a line (0.3 and 0.5 mm) or a corner (1.7 mm) of the device's own frames.
inline constexpr int kThinLine = -2;
inline constexpr int kThickLine = -3;
inline constexpr int kStandardCorner = -100;
