#include "platform/host/keyboard/keyboard_text.h"

#include <pango/pango.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace host {

namespace {

std::string valid(std::string_view utf8) {
    const std::unique_ptr<char, decltype(&g_free)> made(
        g_utf8_make_valid(utf8.data(), static_cast<gssize>(utf8.size())), g_free);
    return made.get();
}

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

/// Cuts at the last place between characters that lies within the limit.
std::string cut(std::string text, std::size_t maxBytes) {
    if (text.size() <= maxBytes) return text;
    const auto offsets = boundaries(text);
    text.resize(*std::prev(std::upper_bound(offsets.begin(), offsets.end(), maxBytes)));
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
    text_ = cut(valid(utf8), maxBytes_);
    cursor_ = text_.size();
}

void KeyboardText::insert(std::string_view utf8) {
    const std::string piece = cut(withoutControls(valid(utf8)), maxBytes_ - text_.size());
    text_.insert(cursor_, piece);
    // A combining mark joins the character before it, so the place behind it is asked for, not assumed.
    const std::size_t behind = cursor_ + piece.size();
    moveTo(behind);
    if (cursor_ != behind) cursor_ = boundaryAfter(behind);
}

void KeyboardText::eraseBefore() {
    const std::size_t from = boundaryBefore(cursor_);
    text_.erase(from, cursor_ - from);
    moveTo(from);
}

void KeyboardText::eraseAfter() {
    text_.erase(cursor_, boundaryAfter(cursor_) - cursor_);
    moveTo(cursor_);
}

void KeyboardText::moveBack() { cursor_ = boundaryBefore(cursor_); }

void KeyboardText::moveForward() { cursor_ = boundaryAfter(cursor_); }

void KeyboardText::moveToLineStart() { moveTo(lineStart()); }

void KeyboardText::moveToLineEnd() { moveTo(lineEnd()); }

void KeyboardText::moveTo(std::size_t offset) {
    cursor_ = text_.size();
    if (offset >= text_.size()) return;  // typing on at the end is what happens most, and needs no search
    const auto offsets = boundaries(text_);
    cursor_ = *std::prev(std::upper_bound(offsets.begin(), offsets.end(), offset));
}

std::size_t KeyboardText::lineStart() const {
    if (cursor_ == 0) return 0;
    const std::size_t end = text_.rfind('\n', cursor_ - 1);
    return end == std::string::npos ? 0 : end + 1;
}

std::size_t KeyboardText::lineEnd() const { return std::min(text_.find('\n', cursor_), text_.size()); }

std::size_t KeyboardText::boundaryBefore(std::size_t offset) const {
    const auto offsets = boundaries(text_);
    const auto here = std::lower_bound(offsets.begin(), offsets.end(), offset);
    return here == offsets.begin() ? 0 : *std::prev(here);
}

std::size_t KeyboardText::boundaryAfter(std::size_t offset) const {
    const auto offsets = boundaries(text_);
    const auto next = std::upper_bound(offsets.begin(), offsets.end(), offset);
    return next == offsets.end() ? text_.size() : *next;
}

}  // namespace host
