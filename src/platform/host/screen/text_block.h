#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include "platform/host/base/geometry.h"

struct _PangoLayout;  // the library's name for it; NOLINT(bugprone-reserved-identifier)

namespace host {

/// Lines of a text by their numbers; `end` is not among them.
struct LineSpan {
    int first = 0;
    int end = std::numeric_limits<int>::max();
};

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

    /// The place of a cursor before that byte, as high as the letters there; its width is 0. Between directions there
    /// are two places: the one where a letter appears that reads from the right, or from the left.
    [[nodiscard]] Rect cursor(std::size_t offset, bool fromRight) const;

    /// The cursor place to the right or left of such a cursor, as it is seen; itself at either end of the text.
    [[nodiscard]] std::size_t beside(std::size_t offset, bool fromRight, bool toRight) const;

    /// The offset of the cursor place next to a point; a point outside counts as its nearest line's.
    [[nodiscard]] std::size_t offsetAt(Point at) const;

    /// True when the paragraph that holds the byte reads from right to left.
    [[nodiscard]] bool readsFromRight(std::size_t offset) const;

    /// True when nothing in the text reads from right to left, and no character asks for a direction.
    [[nodiscard]] bool leftToRight() const;

    /// Puts the first line that far below the point that all places are seen from, in units.
    void moveTo(int top) { top_ = top; }
    [[nodiscard]] int top() const { return top_; }

    [[nodiscard]] _PangoLayout* layout() const { return layout_.get(); }

private:
    struct Release {
        void operator()(_PangoLayout* layout) const;
    };
    [[nodiscard]] std::size_t behind(int index, int characters) const;

    std::unique_ptr<_PangoLayout, Release> layout_;
    int top_ = 0;
};

}  // namespace host
