#pragma once

#include "platform/frame_codes.h"
#include "platform/host/base/geometry.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

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
