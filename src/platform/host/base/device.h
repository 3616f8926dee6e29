#pragma once

#include "platform/frame_codes.h"
#include "platform/host/base/geometry.h"

namespace host {

/// The device described. Values, set once from the command line.
struct Device {
    int width = 1404;
    int height = 1872;
    int dpi = 300;
    /// The user's scale factor.
    double scale = 1.0;
    bool colour = true;
    int platform = 0;

    [[nodiscard]] Rect bounds() const { return {0, 0, width, height}; }

    /// Pixels for design units, made at 300 dpi: n × dpi × scale / 300, rounded, at least 1.
    [[nodiscard]] int designToPixel(int units) const;

    /// Pixels of a frame line for kThinLine or kThickLine; other values come back as they are, at least 0.
    [[nodiscard]] int frameThickness(int code) const;

    /// Pixels of a corner for kStandardCorner; other values come back as they are, at least 0.
    [[nodiscard]] int cornerRadius(int code) const;
};

}  // namespace host
