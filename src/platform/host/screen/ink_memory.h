#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/host/base/geometry.h"

namespace host {

/// How much of each pixel of the screen the present ink covers: 0 nothing, 255 all. Owned by the Ink.
class InkMemory {
public:
    explicit InkMemory(Size size);

    [[nodiscard]] Size size() const { return size_; }

    /// Coverage of the pixels of row y. What is raised there must be touched too.
    [[nodiscard]] std::uint8_t* row(int y) { return covered_.get() + static_cast<std::ptrdiff_t>(y) * size_.w; }
    /// Tells that coverage is raised in row y, in the columns `left` .. `right`, which lie inside.
    void touch(int y, int left, int right);

    /// Forgets the ink inside `area`. The cost follows the ink in it, not the area.
    void forget(Rect area);

private:
    struct Release {
        void operator()(std::uint8_t* bytes) const { std::free(bytes); }
    };

    void clear(Rect area);

    Size size_;
    int tileColumns_;
    std::unique_ptr<std::uint8_t[], Release> covered_;  ///< takes memory only where there has been ink
    std::vector<std::uint8_t> inkedTiles_;              ///< not 0 where the tile may hold ink
    Rect touched_{};                                    ///< no ink lies outside
};

}  // namespace host
