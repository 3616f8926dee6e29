#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/screen.h"

struct _PangoLayout;  // the library's name for it; NOLINT(bugprone-reserved-identifier)

namespace host {

enum class Align { Start, Centre, End };

/// Lines of a text by their numbers; `end` is not among them.
struct LineSpan {
    std::size_t first = 0;
    std::size_t end = std::numeric_limits<std::size_t>::max();
};

/// A text laid out in lines, to be drawn in parts and asked where a cursor stands. Made by Text; all rectangles and
/// points are pixels from the text's own top left corner, all offsets bytes of its UTF-8.
class TextBlock {
public:
    /// Takes over the layout; null is an empty text.
    explicit TextBlock(_PangoLayout* layout);

    /// Lines break at that width or, in a text of one line, end there in an ellipsis.
    void fit(int width, Align align);
    /// Lines that would lie lower are left out, but never the first; the last one shown ends in an ellipsis then.
    void fitHeight(int height);

    [[nodiscard]] Size size() const;
    /// What the ink of one line takes in a box in whose vertical middle it is drawn.
    [[nodiscard]] Size sizeInMiddle() const;
    /// The boxes of the lines, from the top; accents and tails may reach out of them.
    [[nodiscard]] std::vector<Rect> lines() const;

    /// The place of a cursor before that byte, as high as the letters there; its width is 0. Between directions there
    /// are two places: the one where a letter appears that reads from the right, or from the left.
    [[nodiscard]] Rect cursor(std::size_t offset, bool fromRight) const;
    /// Number of the line that shows the cursor.
    [[nodiscard]] std::size_t lineOf(std::size_t offset) const;
    /// The cursor place to the right or left of such a cursor, as it is seen; itself at either end of the text.
    [[nodiscard]] std::size_t beside(std::size_t offset, bool fromRight, bool toRight) const;
    /// The offset of the cursor place next to a point; a point outside counts as its nearest line's.
    [[nodiscard]] std::size_t offsetAt(Point at) const;

    /// Draws what lies inside `clip` of those lines, with the text's top left corner at `topLeft`.
    void draw(Screen& screen, Point topLeft, Rect clip, Rgb colour, LineSpan lines = {}) const;
    /// Fits the text to the box's width and draws it inside: one line in the vertical middle, others from the top;
    /// accents that stand out of the first of these push it down.
    void drawInside(Screen& screen, Rect box, Align align, Rgb colour);

private:
    [[nodiscard]] bool readsFromRight(std::size_t offset) const;
    [[nodiscard]] std::size_t behind(int index, int characters) const;

    std::unique_ptr<_PangoLayout, void (*)(void*)> layout_;
};

}  // namespace host
