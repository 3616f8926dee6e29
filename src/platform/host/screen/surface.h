#pragma once

#include <SDL.h>

#include <cstdint>
#include <memory>

#include "platform/host/base/geometry.h"

namespace host {

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using SurfacePtr = std::unique_ptr<SDL_Surface, FreeSurface>;

/// A surface over pixels that stay the caller's and are only read: of depth 8 (grey), 24 (R, G, B) or 32 (R, G, B,
/// alpha), `stride` bytes from row to row. Null, with SDL's reason set, when memory is short.
[[nodiscard]] SurfacePtr borrowSurface(const std::uint8_t* pixels, Size size, int depth, int stride);

}  // namespace host
