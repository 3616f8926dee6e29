#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/host/geometry.h"

struct _PangoLayout;  // the library's name for it; NOLINT(bugprone-reserved-identifier)

namespace host {

/// A text laid out in lines once, to be drawn in parts and asked where a cursor stands. Made by Text::layOut; all
/// rectangles and points are pixels from the text's own top left corner, all offsets bytes of its UTF-8.
class TextBlock {
public:
    struct Line {
        Rect box;
        Rect ink;  ///< what drawing it may change: accents and tails reach out of the box
        std::size_t start = 0;
        std::size_t length = 0;  ///< without its line end
    };

    /// Takes over the layout; null is an empty text.
    explicit TextBlock(_PangoLayout* layout) : layout_(layout) {}

    [[nodiscard]] std::vector<Line> lines() const;

    /// The place of a cursor before that byte, as high as its line; its width is 0.
    [[nodiscard]] Rect cursor(std::size_t offset) const;

    /// The offset of the cursor place next to a point; a point outside counts as its nearest line's.
    [[nodiscard]] std::size_t offsetAt(Point at) const;

    /// True when the paragraph that holds the byte reads from right to left.
    [[nodiscard]] bool readsFromRight(std::size_t offset) const;

    [[nodiscard]] _PangoLayout* layout() const { return layout_.get(); }

private:
    struct Release {
        void operator()(_PangoLayout* layout) const;
    };
    std::unique_ptr<_PangoLayout, Release> layout_;
};

}  // namespace host
