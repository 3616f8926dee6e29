#pragma once

#include <filesystem>
#include <string>

namespace host {

/// A name beside `wanted` under which nothing stands and a page can be saved: of "scan.jpg", with the note "drawing",
/// "scan (drawing).bmp", then "scan (drawing 2).bmp" and so on; without a note "scan (2).bmp" and so on. Endings of
/// pages stay, any other becomes .bmp; a name too long for a file is cut between characters.
[[nodiscard]] std::filesystem::path freeName(const std::filesystem::path& wanted, const std::string& note);

/// `wanted` itself where nothing stands there, else "NAME (2)" and so on, with the same ending.
[[nodiscard]] std::filesystem::path unusedName(const std::filesystem::path& wanted);

}  // namespace host
