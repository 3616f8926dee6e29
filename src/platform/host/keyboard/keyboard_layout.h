#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace host {

/// What the character keys of one page type, row by row: three rows of keys, and the two keys beside the space key.
struct KeyboardPage {
    static constexpr std::size_t kRows = 4;
    std::array<std::vector<std::string>, kRows> rows;
};

/// The keys of one language, or the signs that all languages share.
struct KeyboardLayout {
    std::string code;          ///< "de"; "signs" for the signs
    std::string name;          ///< in its own language
    std::string letters;       ///< label of the key that leads from the signs back to this layout
    bool startsRight = false;  ///< an empty text's cursor stands at the right
    KeyboardPage base;
    KeyboardPage shifted;
};

/// Reads CODE.ini: `name`, `letters`, `starts` (right, else left), `base1` … `base4` and `shift1` … `shift4`, each
/// row its keys' texts between blanks. A missing or damaged file is one line on standard error and gives the built-in
/// keys (those of English, or the signs).
[[nodiscard]] KeyboardLayout loadKeyboardLayout(const std::filesystem::path& directory, const std::string& code);

/// The codes of the layouts in the directory: `first` (when it is there), then English, then the others by name.
/// English is always among them.
[[nodiscard]] std::vector<std::string> keyboardCodes(const std::filesystem::path& directory, const std::string& first);

inline constexpr const char* kSignsCode = "signs";

}  // namespace host
