#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/host/geometry.h"

namespace host {

/// How much of each pixel of the screen the present ink covers: 0 nothing, 255 all. Owned by the Ink.
class InkMemory {
public:
    explicit InkMemory(Size size);

    [[nodiscard]] Size size() const { return size_; }

    /// Coverage of the pixels of row y, to be raised in the columns `left` .. `right`, which lie inside.
    [[nodiscard]] std::uint8_t* touchRow(int y, int left, int right);

    /// Forgets the ink inside `area`. The cost follows the ink in it, not the area.
    void forget(Rect area);

private:
    void clear(Rect area);

    Size size_;
    int tileColumns_;
    std::vector<std::uint8_t> covered_;
    std::vector<std::uint8_t> inkedTiles_;  ///< not 0 where the tile may hold ink
    Rect touched_{};                        ///< no ink lies outside
};

}  // namespace host
