#include "platform/host/session/script_line.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

#include "platform/host/record/json.h"

namespace host {

namespace {

constexpr std::string_view kBlanks = " \t";

void skipBlanks(std::string_view& line) { line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size())); }

bool atEnd(std::string_view line) { return line.empty() || line.front() == '#'; }

bool readNumber(std::string_view word, int& number, std::string& error) {
    const char* const end = word.data() + word.size();
    const auto [stopped, code] = std::from_chars(word.data(), end, number);
    if (code == std::errc{} && stopped == end) return true;
    error = (code == std::errc::result_out_of_range && stopped == end ? "number out of range: "
                                                                      : "expected a number, not ") +
            shownPiece(word);
    return false;
}

bool readArgument(std::string_view& line, bool wantsText, ScriptArguments& arguments, std::string& error) {
    const bool isText = line.front() == '"';
    if (isText && wantsText) return readJsonString(line, arguments.text, error);
    if (isText || wantsText) {
        error = wantsText ? "expected a string in double quotes" : "expected a number, not a string";
        return false;
    }
    int number = 0;
    if (!readNumber(takeWord(line), number, error)) return false;
    arguments.numbers.push_back(number);
    return true;
}

}  // namespace

std::string_view takeWord(std::string_view& line) {
    skipBlanks(line);
    const std::size_t length = std::min(line.find_first_of(" \t#\""), line.size());
    const std::string_view word = line.substr(0, length);
    line.remove_prefix(length);
    return word;
}

std::optional<ScriptArguments> readArguments(std::string_view line, std::string_view usage, std::string& error) {
    ScriptArguments arguments;
    for (skipBlanks(usage); !usage.empty(); skipBlanks(usage)) {
        const bool wantsText = usage.front() == '"';
        usage.remove_prefix(std::min(usage.find(' '), usage.size()));
        skipBlanks(line);
        if (atEnd(line)) {
            error = "an argument is missing";
            return std::nullopt;
        }
        if (!readArgument(line, wantsText, arguments, error)) return std::nullopt;
    }
    const bool apart = line.empty() || kBlanks.find(line.front()) != std::string_view::npos || line.front() == '#';
    skipBlanks(line);
    if (apart && atEnd(line)) return arguments;
    error = "too much on the line";
    return std::nullopt;
}

std::string shownPiece(std::string_view piece) {
    constexpr std::size_t kLongest = 40;
    if (piece.size() <= kLongest) return jsonQuoted(piece);
    return jsonQuoted(piece.substr(0, kLongest)) + "…";
}

}  // namespace host
