#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// The text being typed and its cursor. A character is what a reader takes for one: a letter with its accents, an
/// emoji with all its parts. The cursor stands between characters, and none is ever split.
class KeyboardText {
public:
    /// The cursor starts behind the text; `maxBytes` holds for all that comes later.
    KeyboardText(std::string_view text, std::size_t maxBytes);

    [[nodiscard]] const std::string& text() const { return text_; }
    /// Byte offset.
    [[nodiscard]] std::size_t cursor() const { return cursor_; }

    /// Replaces the text by as many of these characters as the limit allows.
    void set(std::string_view utf8);
    /// Puts in as many of these characters as the limit allows. Line ends of any kind become '\n', tabs become
    /// spaces, other control characters are left out, broken UTF-8 becomes replacement characters.
    void insert(std::string_view utf8);
    void eraseBefore();
    void eraseAfter();

    void moveToLineStart();
    void moveToLineEnd();
    /// To the character boundary at the offset or before it.
    void moveTo(std::size_t offset);

private:
    std::string text_;
    std::size_t maxBytes_;
    std::size_t cursor_ = 0;
};

}  // namespace host
