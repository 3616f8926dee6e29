#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace host {

/// A whole decimal number from `lowest` to `highest`; nothing for any other text.
[[nodiscard]] inline std::optional<long> wholeNumber(std::string_view text, long lowest, long highest) {
    long number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, code] = std::from_chars(text.data(), end, number);
    if (code != std::errc{} || stopped != end || number < lowest || number > highest) return std::nullopt;
    return number;
}

}  // namespace host
