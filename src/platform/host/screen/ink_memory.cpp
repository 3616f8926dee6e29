#include "platform/host/screen/ink_memory.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace host {

namespace {
constexpr int kTileBits = 5;
constexpr int kTile = 1 << kTileBits;  // pixels in a tile's side

int tilesAcross(int pixels) { return (pixels + kTile - 1) >> kTileBits; }
}  // namespace

InkMemory::InkMemory(Size size)
    : size_(size),
      tileColumns_(tilesAcross(size.w)),
      covered_(
          static_cast<std::uint8_t*>(std::calloc(static_cast<std::size_t>(size.w), static_cast<std::size_t>(size.h)))),
      inkedTiles_(static_cast<std::size_t>(tileColumns_) * static_cast<std::size_t>(tilesAcross(size.h))) {
    if (covered_ == nullptr) throw std::bad_alloc();
}

void InkMemory::touch(int y, int left, int right) {
    std::uint8_t* tiles = inkedTiles_.data() + static_cast<std::ptrdiff_t>(y >> kTileBits) * tileColumns_;
    for (int tile = left >> kTileBits; tile <= right >> kTileBits; ++tile) tiles[tile] = 1;
    touched_ = touched_.united({left, y, right - left + 1, 1});
}

void InkMemory::forget(Rect area) {
    const Rect known = area.intersected(touched_);
    if (known.empty()) return;
    const int lastTileRow = static_cast<int>(known.bottom() - 1) >> kTileBits;
    const int lastTileColumn = static_cast<int>(known.right() - 1) >> kTileBits;
    for (int tileRow = known.y >> kTileBits; tileRow <= lastTileRow; ++tileRow) {
        for (int column = known.x >> kTileBits; column <= lastTileColumn; ++column) {
            std::uint8_t& inked =
                inkedTiles_[static_cast<std::size_t>(tileRow) * static_cast<std::size_t>(tileColumns_) +
                            static_cast<std::size_t>(column)];
            if (inked == 0) continue;
            const Rect tile = Rect{column * kTile, tileRow * kTile, kTile, kTile}.intersected(touched_);
            const Rect part = tile.intersected(known);
            clear(part);
            if (part == tile) inked = 0;
        }
    }
    if (known == touched_) touched_ = {};
}

void InkMemory::clear(Rect area) {
    for (int y = area.y; y < area.bottom(); ++y) std::memset(row(y) + area.x, 0, static_cast<std::size_t>(area.w));
}

}  // namespace host
