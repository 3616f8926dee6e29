#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace host {

/// True when something stands there; a link to nothing counts too: what is written under its name goes elsewhere.
[[nodiscard]] bool isThere(const std::filesystem::path& file);

/// A name beside `wanted` that is not taken and under which a page can be saved: of "scan.jpg", with the note
/// "drawing", "scan (drawing).bmp", then "scan (drawing 2).bmp" and so on; without a note "scan (2).bmp" and so on.
/// Endings of pages stay, any other becomes .bmp; a name too long for a file is cut between characters.
[[nodiscard]] std::filesystem::path freeName(
    const std::filesystem::path& wanted, const std::string& note,
    const std::function<bool(const std::filesystem::path&)>& isTaken = isThere);

/// `wanted` itself where nothing stands there, else "NAME (2)" and so on, with the same ending.
[[nodiscard]] std::filesystem::path unusedName(const std::filesystem::path& wanted);

}  // namespace host
