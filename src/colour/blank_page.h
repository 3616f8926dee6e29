#pragma once

#include "platform/bitmap.h"

/// True when every pixel is white: the first width × depth / 8 bytes of each row are 0xFF. So is a bitmap without
/// rows.
bool isBlank(const bitmap_s& bitmap);
