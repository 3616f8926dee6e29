#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/host/desk/desk.h"
#include "platform/host/screen/flowed_text.h"

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
    /// paints nothing. `emptyAtRight`: an empty text's cursor stands at the right.
    Rect set(const std::string& text, std::size_t cursor, bool emptyAtRight);
    /// The same, and paints that part; refreshes nothing.
    [[nodiscard]] Rect show(const std::string& text, std::size_t cursor, bool emptyAtRight);

    // Places in the text, as byte offsets.

    [[nodiscard]] std::size_t offsetAt(Point onScreen) const;
    [[nodiscard]] std::size_t lineAbove() const;
    [[nodiscard]] std::size_t lineBelow() const;
    /// True when the cursor's line reads from right to left.
    [[nodiscard]] bool readsFromRight() const { return flow_.readsFromRight(cursor_); }

private:
    struct ShownLine {
        std::string text;
        Rect ink;  ///< on the screen
        bool operator==(const ShownLine&) const = default;
    };

    [[nodiscard]] std::vector<ShownLine> visibleLines() const;
    [[nodiscard]] Rect textClip() const;
    [[nodiscard]] Rect cursorBar() const;
    void scrollToCursor();
    void paintPart(Rect part);

    Desk desk_;
    Rect box_;
    Rect clip_;    ///< where marks above and below the text may reach
    Rect inside_;  ///< where its lines are laid out
    std::size_t cursor_ = 0;
    bool emptyAtRight_ = false;
    FlowedText flow_;
    int scrolled_ = 0;  ///< rows of the text above the field
    std::vector<ShownLine> shown_;
};

}  // namespace host
