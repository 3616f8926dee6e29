#pragma once

#include "platform/host/base/geometry.h"
#include "platform/host/screen/bitmap_record.h"
#include "platform/host/screen/damage.h"
#include "platform/host/screen/framebuffer.h"

namespace host {

/// True when the record has a known depth and its rows hold its width.
[[nodiscard]] bool drawable(const bitmap_s& bitmap);

/// Draws the part of a drawable bitmap that falls on `area`, which lies inside the buffer and under the bitmap,
/// and adds what may have changed to `damage`.
void drawBitmap(Framebuffer& buffer, Point topLeft, const bitmap_s& bitmap, Rect area, Damage& damage);

/// A copy of `area`, in its full size; white where it lies outside the buffer. Null when `area` is empty or does
/// not fit a record.
[[nodiscard]] BitmapPtr captureArea(const Framebuffer& buffer, Rect area);

}  // namespace host
