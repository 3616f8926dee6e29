#pragma once

#include <array>
#include <span>
#include <vector>

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

/// Boxes side by side in the middle of a row that is `units` wide; each is as many units wide as its width says.
[[nodiscard]] std::vector<Rect> keyBoxes(Rect row, int gap, double units, std::span<const double> widths);

}  // namespace host
