#pragma once

#include "platform/host/base/geometry.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// How a region of the panel is brought up to date. In the order of their strength: where two are asked for at
/// once, the later one serves both.
enum class Waveform {
    Fast,     ///< one-bit black and white: anything but white (and what is hardly darker) is ink
    Regular,  ///< full quality
    Full,     ///< full quality, with a flash that removes all ghosts
};

/// Makes `area` of `picture` what `waveform` shows of the same area of `screen`. Both have the same size and
/// format; `area` lies inside.
void refresh(const Framebuffer& screen, Rect area, Waveform waveform, Framebuffer& picture);

}  // namespace host
