#pragma once

#include <SDL_video.h>

namespace host {

/// Gives the window its icon: a page with a stroke on it.
void setIcon(SDL_Window* window);

}  // namespace host
