#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// What stands at the front of a text: its bytes, and whether they are one whole character. Of a broken one they are
/// the longest beginning of a character, or else a single byte.
struct Utf8Sequence {
    std::size_t bytes;
    bool whole;
};

/// The text must not be empty.
[[nodiscard]] Utf8Sequence firstSequence(std::string_view text);

inline constexpr std::string_view kReplacementCharacter = "\uFFFD";

/// The text as valid UTF-8: each broken sequence becomes one U+FFFD. A zero byte, which would end the text for C
/// libraries, counts as broken.
[[nodiscard]] std::string repairedUtf8(std::string_view text);

}  // namespace host
