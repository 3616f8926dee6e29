#pragma once

#include "platform/vistrel.h"

/// Geometry and look of the text frame. With L = x, T = y, R = x + w and B = y + h the frame's lines lie on the columns
/// L and R and the rows T and B, so the drawn frame is one pixel larger than w × h.
namespace text_frame {

enum Edge : int {
    kEdgeLeft = 1,
    kEdgeRight = 2,
    kEdgeTop = 4,
    kEdgeBottom = 8,
};

/// Where a pointer-down falls.
struct Hit {
    enum Zone { Inside, Outside, Band, Handle };
    Zone zone;
    /// The edges that a handle moves; 0 off the handles.
    int edges;
};

/// The smallest width and height, in pixels.
int minimumSize();

Hit hitTest(const irect_s& frame, int x, int y);

/// The rectangle that holds both points, at least of the minimum size and moved back onto the screen where that
/// made it larger. Keeps the flags of `anchor`.
irect_s between(const irect_s& anchor, int x, int y);

/// The frame moved by the drag, within the screen, its size unchanged.
irect_s moved(const irect_s& frame, int dx, int dy);

/// The frame with the edges moved by the drag, within the screen and never below the minimum size.
irect_s resized(const irect_s& frame, int edges, int dx, int dy);

/// Paints the dashed outline and the eight handles.
void draw(const irect_s& frame);

}  // namespace text_frame
