#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/touch/desk.h"

namespace host {

/// The field that shows the text being typed: wrapped, with its cursor, scrolled by lines so that the cursor is in
/// sight. Owned by Keyboard.
class KeyboardField {
public:
    KeyboardField(const Desk& desk, Rect box);

    [[nodiscard]] Rect box() const { return box_; }

    /// Takes a new text or cursor place; paints nothing. `fromRight`: the keys' letters read from the right; the cursor
    /// stands where one would appear.
    void set(const std::string& text, std::size_t cursor, bool fromRight);

    /// Paints the whole field; refreshes nothing.
    void paint();

    // Places in the text, as byte offsets.

    [[nodiscard]] std::size_t offsetAt(Point onScreen) const;
    /// One cursor place to the left or right of the cursor, as it is seen.
    [[nodiscard]] std::size_t beside(bool toRight) const { return block_.beside(cursor_, fromRight_, toRight); }
    /// One line up or down. Steps in a row keep to the column in which they began.
    [[nodiscard]] std::size_t lineBeside(bool down);

private:
    /// Where the text's own top left corner lies on the screen.
    [[nodiscard]] Point origin() const;
    [[nodiscard]] Rect cursorBar() const;
    [[nodiscard]] bool fit(std::size_t first, std::size_t last) const;
    void scrollToCursor();

    Desk desk_;
    Rect box_;
    Rect clip_;    ///< where marks above and below the text may reach
    Rect inside_;  ///< where its lines are laid out
    TextBlock block_;
    std::vector<Rect> lines_;  ///< at least one, except on a machine without fonts
    std::size_t first_ = 0;    ///< of the lines in sight
    bool empty_ = true;
    std::size_t cursor_ = 0;
    bool fromRight_ = false;
    int column_ = 0;                      ///< where the cursor stands or, after steps up and down, would like to
    std::optional<std::size_t> stepped_;  ///< where the last of these led
};

}  // namespace host
