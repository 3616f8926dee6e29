#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/screen/flowed_text.h"
#include "platform/host/touch/desk.h"

namespace host {

/// The field that shows the text being typed: wrapped, with its cursor, scrolled by lines so that the cursor is in
/// sight. Owned by Keyboard.
class KeyboardField {
public:
    KeyboardField(const Desk& desk, Rect box);

    [[nodiscard]] Rect box() const { return box_; }

    /// Paints the whole field.
    void paint();

    /// Takes a new text or cursor place and returns the part of the field that changes by it, empty when nothing does;
    /// paints nothing. `fromRight`: the keys' letters read from the right; the cursor stands where one would appear.
    Rect set(const std::string& text, std::size_t cursor, bool fromRight);
    /// The same, and paints that part; refreshes nothing.
    [[nodiscard]] Rect show(const std::string& text, std::size_t cursor, bool fromRight);

    // Places in the text, as byte offsets.

    [[nodiscard]] std::size_t offsetAt(Point onScreen) const;
    /// One cursor place to the left or right of the cursor, as it is seen.
    [[nodiscard]] std::size_t beside(bool toRight) const { return flow_.beside(cursor_, fromRight_, toRight); }
    /// One line up (-1) or down (1). Steps in a row keep to the column in which they began.
    [[nodiscard]] std::size_t lineBeside(int step);

private:
    struct ShownLine {
        std::string text;
        Rect ink;  ///< on the screen
        bool operator==(const ShownLine&) const = default;
    };

    [[nodiscard]] LineSpan wholeLines() const;
    [[nodiscard]] std::vector<ShownLine> visibleLines() const;
    [[nodiscard]] Rect cursorBar() const;
    void scrollToCursor();
    void paintPart(Rect part);

    Desk desk_;
    Rect box_;
    Rect clip_;    ///< where marks above and below the text may reach
    Rect inside_;  ///< where its lines are laid out
    std::size_t cursor_ = 0;
    bool fromRight_ = false;
    int column_ = 0;                      ///< where the cursor stands or, after steps up and down, would like to
    std::optional<std::size_t> stepped_;  ///< where the last of these led
    FlowedText flow_;
    int scrolled_ = 0;  ///< rows of the text above the field
    std::vector<ShownLine> shown_;
};

}  // namespace host
