#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The arguments of one command: all its numbers, or its one string.
struct ScriptArguments {
    std::vector<int> numbers;
    std::string text;
};

/// Cuts the first word off a script line; empty when the line has none left (blank, or only a comment). Stops before
/// white space, a comment and a string.
[[nodiscard]] std::string_view takeWord(std::string_view& line);

/// Reads all arguments of a line as `usage` says: a word that begins with '"' stands for a string, any other for a
/// number. Nothing, with the reason in `error`, when they are not exactly these.
[[nodiscard]] std::optional<ScriptArguments> readArguments(std::string_view line, std::string_view usage,
                                                           std::string& error);

/// A piece of a script as a message shows it: quoted, and cut where it is long.
[[nodiscard]] std::string shownPiece(std::string_view piece);

}  // namespace host
