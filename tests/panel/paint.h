#pragma once

#include "platform/host/screen/framebuffer.h"

namespace host {

/// Makes every pixel of `area` of that colour; on grey its blue part counts.
inline void paint(Framebuffer& picture, Rect area, Rgb colour) {
    for (int y = area.y; y < area.bottom(); ++y) {
        for (int x = area.x; x < area.right(); ++x) {
            std::uint8_t* pixel = picture.at(x, y);
            for (int c = picture.bytesPerPixel() - 1; c >= 0; --c)
                pixel[c] = static_cast<std::uint8_t>(colour >> 8 * (picture.bytesPerPixel() - 1 - c));
        }
    }
}

}  // namespace host
