#include "platform/host/record/json.h"

#include <glib.h>

#include <charconv>
#include <cstdio>
#include <optional>

#include "platform/host/base/utf8.h"

namespace host {

namespace {

/// Each short escape's letter, and at the same place in kShortMeanings the character it stands for.
constexpr std::string_view kShortLetters = "\"\\/bfnrt";
constexpr std::string_view kShortMeanings = "\"\\/\b\f\n\r\t";

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20; }

std::string escaped(char c) {
    const std::size_t letter = kShortMeanings.find(c);
    if (letter != std::string_view::npos) return {'\\', kShortLetters[letter]};
    char code[7];
    std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
    return code;
}

/// Takes "XXXX" off the front.
std::optional<unsigned> takeHex(std::string_view& input) {
    constexpr std::size_t kDigits = 4;
    if (input.size() < kDigits) return std::nullopt;
    unsigned code = 0;
    const char* const end = input.data() + kDigits;
    if (std::from_chars(input.data(), end, code, 16).ptr != end) return std::nullopt;
    input.remove_prefix(kDigits);
    return code;
}

/// Takes the digits of a \u escape off the front, and those of the second half of a surrogate pair.
std::optional<unsigned> takeCodePoint(std::string_view& input) {
    const std::optional<unsigned> first = takeHex(input);
    if (!first || *first == 0 || (*first >= 0xDC00 && *first < 0xE000)) return std::nullopt;
    if (*first < 0xD800 || *first >= 0xE000) return first;
    if (!input.starts_with("\\u")) return std::nullopt;
    input.remove_prefix(2);
    const std::optional<unsigned> second = takeHex(input);
    if (!second || *second < 0xDC00 || *second >= 0xE000) return std::nullopt;
    return 0x10000 + ((*first - 0xD800) << 10U) + (*second - 0xDC00);
}

/// Takes an escape, without its backslash, off the front.
bool takeEscape(std::string_view& input, std::string& text, std::string& error) {
    const char letter = input.empty() ? '\0' : input.front();
    if (!input.empty()) input.remove_prefix(1);
    if (letter == 'u') {
        const std::optional<unsigned> code = takeCodePoint(input);
        char bytes[6];
        if (code) text.append(bytes, static_cast<std::size_t>(g_unichar_to_utf8(*code, bytes)));
        if (!code) error = "a \\u escape in the string is no character";
        return code.has_value();
    }
    const std::size_t index = letter == '\0' ? std::string_view::npos : kShortLetters.find(letter);
    if (index == std::string_view::npos) {
        error = "unknown escape in the string";
        return false;
    }
    text += kShortMeanings[index];
    return true;
}

}  // namespace

std::string jsonQuoted(std::string_view text) {
    std::string out = "\"";
    while (!text.empty()) {
        const char c = text.front();
        const Utf8Sequence sequence = firstSequence(text);
        if (c == '"' || c == '\\' || isControl(c)) {
            out += escaped(c);
        } else {
            out += sequence.whole ? text.substr(0, sequence.bytes) : kReplacementCharacter;
        }
        text.remove_prefix(sequence.bytes);
    }
    out += '"';
    return out;
}

bool readJsonString(std::string_view& input, std::string& text, std::string& error) {
    text.clear();
    input.remove_prefix(1);
    while (!input.empty() && input.front() != '"') {
        const Utf8Sequence sequence = firstSequence(input);
        if (input.front() == '\\') {
            input.remove_prefix(1);
            if (!takeEscape(input, text, error)) return false;
            continue;
        }
        if (isControl(input.front()) || !sequence.whole) {
            error = sequence.whole ? "a control character in the string must be escaped" : "the string is not UTF-8";
            return false;
        }
        text += input.substr(0, sequence.bytes);
        input.remove_prefix(sequence.bytes);
    }
    if (input.empty()) {
        error = "the string has no end";
        return false;
    }
    input.remove_prefix(1);
    return true;
}

}  // namespace host
