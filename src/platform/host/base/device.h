#pragma once

#include "platform/host/base/geometry.h"

namespace host {

// Codes that stand for a line or corner of the device's own frames.
inline constexpr int kThinLine = -2;
inline constexpr int kThickLine = -3;
inline constexpr int kStandardCorner = -100;

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

    /// Pixels of a frame line for kThinLine (0.3 mm) or kThickLine (0.5 mm); other values come back as they are, at
    /// least 0.
    [[nodiscard]] int frameThickness(int code) const;

    /// Pixels of a corner for kStandardCorner (1.7 mm); other values come back as they are, at least 0.
    [[nodiscard]] int cornerRadius(int code) const;
};

}  // namespace host
