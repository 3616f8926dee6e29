#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/host/screen/text.h"
#include "platform/host/screen/text_block.h"

namespace host {

/// A text in lines of one width that is being edited. A change lays out the lines that it may touch and those below
/// them, so typing at the end of a long text costs no more than its last line. Points and offsets are TextBlock's.
class FlowedText {
public:
    FlowedText(Text& text, font_s font, int width);

    /// Takes a new text, in valid UTF-8.
    void set(const std::string& utf8);

    [[nodiscard]] const std::string& utf8() const { return utf8_; }
    /// At least one, except on a machine without fonts.
    [[nodiscard]] const std::vector<TextBlock::Line>& lines() const { return lines_; }
    [[nodiscard]] Rect cursor(std::size_t offset, bool fromRight) const;
    [[nodiscard]] std::size_t beside(std::size_t offset, bool fromRight, bool toRight) const;
    [[nodiscard]] std::size_t offsetAt(Point at) const;
    /// Number of the line that shows the cursor.
    [[nodiscard]] int lineOf(std::size_t offset) const;

    /// Draws what lies inside `clip` of those lines; the top left corner of the text is at `topLeft`.
    void draw(Screen& screen, Point topLeft, LineSpan lines, Rect clip, Rgb colour) const;

private:
    /// Lines that were laid out together, up to the next section's.
    struct Section {
        std::size_t start;  ///< offset of the first line
        int line;           ///< its number
        TextBlock block;
    };

    [[nodiscard]] int firstTouched(std::size_t edit) const;
    void layOutFrom(int line);
    [[nodiscard]] const Section& sectionOf(std::size_t offset) const;

    Text& text_;
    font_s font_;
    int width_;
    std::string utf8_;
    std::vector<TextBlock::Line> lines_;
    std::vector<Section> sections_;
};

}  // namespace host
