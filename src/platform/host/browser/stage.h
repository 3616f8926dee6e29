#pragma once

#include <deque>
#include <optional>

#include "platform/host/browser/drawing.h"

namespace host {

/// What all clients share: the panel and what is done on it. Owned by the display, outlives its clients.
struct Stage {
    Size size;
    PixelFormat format;
    const Framebuffer* shown = nullptr;  ///< borrowed; null before anything has been shown
    std::optional<Rect> typing{};        ///< where text appears, while it is taken
    std::deque<Input> inputs{};          ///< not fetched yet
    Drawing drawing{inputs};
};

}  // namespace host
