#include "platform/host/keyboard/keyboard_text.h"

#include <pango/pango.h>

#include <algorithm>
#include <vector>

#include "platform/host/base/utf8.h"

namespace host {

namespace {

/// Byte offsets of all places between characters in valid UTF-8, both ends included.
std::vector<std::size_t> boundaries(const std::string& text) {
    const auto bytes = static_cast<int>(text.size());
    std::vector<PangoLogAttr> attributes(static_cast<std::size_t>(g_utf8_strlen(text.c_str(), bytes)) + 1);
    pango_get_log_attrs(text.c_str(), bytes, -1, pango_language_get_default(), attributes.data(),
                        static_cast<int>(attributes.size()));
    std::vector<std::size_t> offsets;
    const char* at = text.c_str();
    for (std::size_t i = 0; i + 1 < attributes.size(); ++i, at = g_utf8_next_char(at))
        if (i == 0 || attributes[i].is_cursor_position) offsets.push_back(static_cast<std::size_t>(at - text.c_str()));
    offsets.push_back(text.size());
    return offsets;
}

/// The last place between characters that is not behind the offset.
std::size_t boundaryUpTo(const std::string& text, std::size_t offset) {
    const auto offsets = boundaries(text);
    return *std::prev(std::upper_bound(offsets.begin(), offsets.end(), offset));
}

/// The first place between characters that is not before the offset.
std::size_t boundaryFrom(const std::string& text, std::size_t offset) {
    const auto offsets = boundaries(text);
    return *std::lower_bound(offsets.begin(), offsets.end(), std::min(offset, text.size()));
}

std::string cut(std::string text, std::size_t maxBytes) {
    text.resize(boundaryUpTo(text, maxBytes));
    return text;
}

std::string withoutControls(const std::string& text) {
    std::string kept;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool lineFeedAfterReturn = c == '\n' && i > 0 && text[i - 1] == '\r';
        if (c == '\r' || (c == '\n' && !lineFeedAfterReturn)) kept += '\n';
        if (c == '\t') kept += ' ';
        if (static_cast<unsigned char>(c) >= ' ' && c != '\x7F') kept += c;
    }
    return kept;
}

}  // namespace

KeyboardText::KeyboardText(std::string_view text, std::size_t maxBytes) : maxBytes_(maxBytes) { set(text); }

void KeyboardText::set(std::string_view utf8) {
    text_ = cut(repairedUtf8(utf8), maxBytes_);
    cursor_ = text_.size();
}

void KeyboardText::insert(std::string_view utf8) {
    const std::string piece = cut(withoutControls(repairedUtf8(utf8)), maxBytes_ - text_.size());
    text_.insert(cursor_, piece);
    // A combining mark joins the character before it, so the place behind it is asked for, not assumed.
    cursor_ = boundaryFrom(text_, cursor_ + piece.size());
}

void KeyboardText::eraseBefore() {
    const std::size_t from = cursor_ == 0 ? 0 : boundaryUpTo(text_, cursor_ - 1);
    text_.erase(from, cursor_ - from);
    moveTo(from);
}

void KeyboardText::eraseAfter() {
    text_.erase(cursor_, boundaryFrom(text_, cursor_ + 1) - cursor_);
    moveTo(cursor_);
}

void KeyboardText::moveToLineStart() {
    const std::size_t lineEnd = cursor_ == 0 ? std::string::npos : text_.rfind('\n', cursor_ - 1);
    cursor_ = lineEnd == std::string::npos ? 0 : lineEnd + 1;
}

// A text that was handed over may have line ends of two characters.
void KeyboardText::moveToLineEnd() { moveTo(std::min(text_.find('\n', cursor_), text_.size())); }

void KeyboardText::moveTo(std::size_t offset) { cursor_ = boundaryUpTo(text_, offset); }

}  // namespace host
