#pragma once

#include <cstdint>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// Antialiased shape of one colour: `size.w` × `size.h` bytes of coverage, rows `stride` bytes apart.
struct Coverage {
    const std::uint8_t* rows;
    int stride;
    Size size;
};

/// Lays the colour over `area`, which lies inside the buffer and under the coverage.
void tintArea(Framebuffer& buffer, Point topLeft, const Coverage& coverage, Rect area, Rgb colour);

}  // namespace host
