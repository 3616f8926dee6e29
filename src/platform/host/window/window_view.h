#pragma once

#include "platform/host/base/geometry.h"

namespace host {

/// Where the panel's picture lies in a window, and back from there to the panel. The picture is as large as the
/// window allows, keeps its shape and is centred.
class WindowView {
public:
    /// Both in pixels, at least 1 × 1.
    WindowView(Size panel, Size window);

    /// The picture's place in the window.
    [[nodiscard]] Rect picture() const { return picture_; }
    [[nodiscard]] Size window() const { return window_; }

    /// The window's pixels that show any part of `area` of the panel.
    [[nodiscard]] Rect toWindow(Rect area) const;

    /// The panel pixel shown at a place in the window, in window pixels (the middle of the first pixel is 0.5);
    /// beside the picture the nearest one.
    [[nodiscard]] Point toPanel(double x, double y) const;

    /// The largest size that keeps the panel's shape, is no larger than the panel, and fits `room`.
    [[nodiscard]] static Size fit(Size panel, Size room);

private:
    Size panel_;
    Size window_;
    Rect picture_;
};

}  // namespace host
