#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include "platform/host/geometry.h"

struct _PangoLayout;  // the library's name for it; NOLINT(bugprone-reserved-identifier)

namespace host {

/// A text laid out in lines once, to be drawn in parts and asked where a cursor stands. Made by Text::layOut; all
/// rectangles and points are pixels from the text's own top left corner, all offsets bytes of its UTF-8.
class TextBlock {
public:
    static constexpr int kUnits = 1024;  ///< to the pixel, where whole pixels are too coarse

    struct Line {
        Rect box;
        int top = 0;  ///< of the box, in units: lines need not be whole pixels high
        Rect ink;     ///< what drawing it may change: accents and tails reach out of the box
        std::size_t start = 0;
        std::size_t length = 0;  ///< without its line end
    };

    /// Takes over the layout; null is an empty text.
    explicit TextBlock(_PangoLayout* layout) : layout_(layout) {}

    [[nodiscard]] Size size() const;

    [[nodiscard]] std::vector<Line> lines() const;

    /// The place of a cursor before that byte, as high as its line; its width is 0.
    [[nodiscard]] Rect cursor(std::size_t offset) const;

    /// The offset of the cursor place next to a point; a point outside counts as its nearest line's.
    [[nodiscard]] std::size_t offsetAt(Point at) const;

    /// True when the paragraph that holds the byte reads from right to left.
    [[nodiscard]] bool readsFromRight(std::size_t offset) const;

    /// True when nothing in the text reads from right to left, and no character asks for a direction.
    [[nodiscard]] bool leftToRight() const;

    /// Puts the first line that far below the point that all places are seen from, in units.
    void moveTo(int top) { top_ = top; }
    /// Forgets the lines behind the first `count`; places asked for must lie in these.
    void keepLines(int count) { lineLimit_ = count; }

    // For drawing.

    [[nodiscard]] _PangoLayout* layout() const { return layout_.get(); }
    [[nodiscard]] int top() const { return top_; }
    [[nodiscard]] int lineLimit() const { return lineLimit_; }

private:
    struct Release {
        void operator()(_PangoLayout* layout) const;
    };
    std::unique_ptr<_PangoLayout, Release> layout_;
    int top_ = 0;
    int lineLimit_ = std::numeric_limits<int>::max();
};

}  // namespace host
