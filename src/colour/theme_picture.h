#pragma once

#include <string>

#include "platform/smart_bitmap.h"

/// The theme's picture of that name; the "broken_image" picture where the theme has none.
SmartBitmap themePicture(const std::string& name);
