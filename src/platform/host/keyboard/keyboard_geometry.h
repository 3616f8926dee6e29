#pragma once

#include <array>

#include "platform/host/base/device.h"
#include "platform/host/base/geometry.h"

namespace host {

enum class KeyboardEdge { Bottom, Top };

/// Where the parts of the keyboard lie: title and field with the keys that end the typing beside them, then four
/// rows of keys. Keys are at least 8 mm high wherever 45 % of a portrait panel (60 % of a landscape one) allow it.
struct KeyboardGeometry {
    KeyboardGeometry(const Device& device, KeyboardEdge edge);

    Rect area;
    /// The line that parts the keyboard from the picture.
    Rect border;
    Rect title;
    Rect field;
    Rect clear;
    Rect cancel;
    Rect ok;
    std::array<Rect, 4> rows;
    int gap;
};

}  // namespace host
