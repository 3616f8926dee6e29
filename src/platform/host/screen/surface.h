#pragma once

#include <SDL.h>

#include <memory>

namespace host {

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using SurfacePtr = std::unique_ptr<SDL_Surface, FreeSurface>;

}  // namespace host
