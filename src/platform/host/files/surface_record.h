#pragma once

#include <SDL.h>

#include "platform/host/files/picture_file.h"

namespace host {

/// The picture on a surface of at least 8 bits a pixel: of depth 8 when the surface has a palette of greys, else of
/// depth 24; transparent parts come onto white, and then it is not whole. Null when a record cannot hold it.
[[nodiscard]] Picture recordFrom(SDL_Surface& surface);

}  // namespace host
