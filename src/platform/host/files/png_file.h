#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace host {

[[nodiscard]] bool isPng(std::span<const std::uint8_t> start);

/// Checks a whole PNG file and reduces it in place to the chunks that make up its pixels, so that a decoder sees
/// nothing else: a damaged colour profile or an endless comment must not cost the picture. Returns the reduced
/// file's part of `bytes`; empty, with the reason in `reason`, when the file is cut, damaged, too large, or
/// promises more pixels than its content can hold.
[[nodiscard]] std::span<std::uint8_t> reducePng(std::span<std::uint8_t> bytes, std::string& reason);

}  // namespace host
