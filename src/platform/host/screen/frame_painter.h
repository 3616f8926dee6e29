#pragma once

#include "platform/host/base/geometry.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// Bits of Frame::sides.
inline constexpr int kLeftSide = 1;
inline constexpr int kTopSide = 2;
inline constexpr int kRightSide = 4;
inline constexpr int kBottomSide = 8;
inline constexpr int kAllSides = 15;

/// Bits of Frame::corners: the rounded corners, and whether the inside takes the line's colour.
inline constexpr int kTopLeftCorner = 1;
inline constexpr int kTopRightCorner = 2;
inline constexpr int kBottomRightCorner = 4;
inline constexpr int kBottomLeftCorner = 8;
inline constexpr int kAllCorners = 15;
inline constexpr int kFilled = 16;

/// A frame with rounded corners; the fields are those of DrawFrameCertifiedEx with all codes resolved to
/// pixels. Thickness and radius are at most half the shorter side; what is beyond it counts as that half. A corner
/// is square when its bit is not set or one of its two sides is not drawn.
struct Frame {
    Rect box;
    int thickness;
    int sides = kAllSides;
    int corners = kAllCorners;
    int radius;
    Rgb colour = kBlack;
};

/// Draws the part of the frame that lies inside the buffer.
void paintFrame(Framebuffer& buffer, const Frame& frame);

}  // namespace host
