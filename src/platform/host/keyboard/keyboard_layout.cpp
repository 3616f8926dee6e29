#include "platform/host/keyboard/keyboard_layout.h"

#include <glib.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string_view>

namespace host {

namespace {

constexpr std::size_t kMostKeys = 12;      // in a row; more would be narrower than a fingertip
constexpr std::size_t kMostSideKeys = 10;  // in the third row, which shift and backspace enclose
constexpr std::size_t kKeysBesideSpace = 2;
constexpr std::size_t kLongestFile = 1 << 16;
constexpr const char* kEnglish = "en";

// Without any theme the keyboard still types.
constexpr std::string_view kBuiltInEnglish = R"(
name = English
letters = ABC
base1 = q w e r t y u i o p
base2 = a s d f g h j k l
base3 = z x c v b n m
base4 = , .
shift1 = Q W E R T Y U I O P
shift2 = A S D F G H J K L
shift3 = Z X C V B N M
shift4 = ! ?
)";
constexpr std::string_view kBuiltInSigns = R"(
name = Signs
letters = ?123
base1 = 1 2 3 4 5 6 7 8 9 0
base2 = @ # $ _ & - + ( ) /
base3 = * " ' : ; ! ? %
base4 = , .
shift1 = ~ ` | \ { } [ ] ^ =
shift2 = @ # $ _ & - + < > /
shift3 = * " ' : ; ! ? %
shift4 = , .
)";

using Values = std::map<std::string, std::string>;

std::string trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

Values valuesOf(const std::string& content) {
    Values values;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        // A row may well hold '=' or '#' as a key: only a line's first character makes a comment.
        const std::size_t equals = line.find('=');
        if (line.empty() || line[0] == '#' || equals == std::string::npos) continue;
        values[trimmed(line.substr(0, equals))] = trimmed(line.substr(equals + 1));
    }
    return values;
}

std::vector<std::string> keysOf(const std::string& row) {
    std::istringstream stream(row);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// Why the page cannot be shown; empty when it can. `name` is that of its rows in the file.
std::string faultOf(const KeyboardPage& page, const std::string& name) {
    for (std::size_t i = 0; i < KeyboardPage::kRows; ++i) {
        const std::string row = name + std::to_string(i + 1);
        const std::size_t most = i == 2 ? kMostSideKeys : kMostKeys;
        if (page.rows[i].empty()) return row + " has no keys";
        if (page.rows[i].size() > most) return row + " has more than " + std::to_string(most) + " keys";
    }
    if (page.rows[3].size() != kKeysBesideSpace) return name + "4 has not two keys";
    return {};
}

/// Nothing, with the reason in `fault`, when the content is no complete layout.
std::optional<KeyboardLayout> parsed(const std::string& code, const std::string& content, std::string& fault) {
    if (!g_utf8_validate(content.data(), static_cast<gssize>(content.size()), nullptr)) {
        fault = "is not UTF-8 text";
        return std::nullopt;
    }
    Values values = valuesOf(content);
    KeyboardLayout layout;
    layout.code = code;
    layout.name = values["name"];
    layout.letters = values["letters"];
    for (std::size_t i = 0; i < KeyboardPage::kRows; ++i) {
        layout.base.rows[i] = keysOf(values["base" + std::to_string(i + 1)]);
        layout.shifted.rows[i] = keysOf(values["shift" + std::to_string(i + 1)]);
    }
    layout.startsRight = values["starts"] == "right";
    if (layout.name.empty()) layout.name = code;
    if (layout.letters.empty()) layout.letters = layout.base.rows[0].empty() ? code : layout.base.rows[0][0];
    fault = faultOf(layout.base, "base");
    if (fault.empty()) fault = faultOf(layout.shifted, "shift");
    if (!fault.empty()) return std::nullopt;
    return layout;
}

KeyboardLayout builtIn(const std::string& code) {
    const bool signs = code == kSignsCode;
    std::string fault;
    return *parsed(signs ? code : kEnglish, std::string(signs ? kBuiltInSigns : kBuiltInEnglish), fault);
}

std::optional<std::string> contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string content(kLongestFile, '\0');
    if (!stream) return std::nullopt;
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (stream.bad()) return std::nullopt;
    content.resize(static_cast<std::size_t>(stream.gcount()));
    return content;
}

}  // namespace

KeyboardLayout loadKeyboardLayout(const std::filesystem::path& directory, const std::string& code) {
    const std::filesystem::path file = directory / (code + ".ini");
    std::string fault = "cannot be read";
    if (const auto content = contentOf(file))
        if (const auto layout = parsed(code, *content, fault)) return *layout;
    std::cerr << "colour: keyboard layout " << file.string() << ": " << fault << "; built-in keys are used\n";
    return builtIn(code);
}

std::vector<std::string> keyboardCodes(const std::filesystem::path& directory, const std::string& first) {
    std::vector<std::string> codes{kEnglish};
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
        const std::string code = entry.path().stem().string();
        if (entry.path().extension() == ".ini" && code != kSignsCode && code != kEnglish) codes.push_back(code);
    }
    std::sort(std::next(codes.begin()), codes.end());
    const auto found = std::find(codes.begin(), codes.end(), first);
    if (found != codes.end()) std::rotate(codes.begin(), found, std::next(found));
    return codes;
}

}  // namespace host
