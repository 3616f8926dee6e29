#pragma once

#include <string>
#include <string_view>

namespace host {

/// The text as valid UTF-8. Each broken part becomes one U+FFFD: the longest beginning of a character that is cut
/// short, or else a single byte. A zero byte, which would end the text for C libraries, counts as broken.
[[nodiscard]] std::string repairedUtf8(std::string_view text);

}  // namespace host
