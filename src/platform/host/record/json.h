#pragma once

#include <string>
#include <string_view>

namespace host {

/// A JSON string for any bytes: only '"', '\' and control characters are escaped; broken UTF-8 becomes U+FFFD, one
/// for each maximal broken part.
[[nodiscard]] std::string jsonQuoted(std::string_view text);

/// Reads the JSON string at the front of `input` (which begins with '"') into `text` and removes it from `input`.
/// False, with the reason in `error`, when it is no JSON string in UTF-8, or holds a NUL, which no text here can.
[[nodiscard]] bool readJsonString(std::string_view& input, std::string& text, std::string& error);

}  // namespace host
