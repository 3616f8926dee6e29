#include "platform/host/keyboard/keyboard_layout.h"

#include <glib.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>

#include "platform/host/files/ini_file.h"

namespace host {

namespace {

constexpr std::size_t kMostKeys = 12;      // in a row; more would be narrower than a fingertip
constexpr std::size_t kMostSideKeys = 10;  // in the third row, which shift and backspace enclose
constexpr std::size_t kKeysBesideSpace = 2;
constexpr const char* kEnglish = "en";

// Without any theme the keyboard still types.
IniValues builtInEnglish() {
    return {{"name", "English"},
            {"letters", "ABC"},
            {"base1", "q w e r t y u i o p"},
            {"base2", "a s d f g h j k l"},
            {"base3", "z x c v b n m"},
            {"base4", ", ."},
            {"shift1", "Q W E R T Y U I O P"},
            {"shift2", "A S D F G H J K L"},
            {"shift3", "Z X C V B N M"},
            {"shift4", "! ?"}};
}

IniValues builtInSigns() {
    return {{"name", "Signs"},
            {"letters", "?123"},
            {"base1", "1 2 3 4 5 6 7 8 9 0"},
            {"base2", "@ # $ _ & - + ( ) /"},
            {"base3", "* \" ' : ; ! ? %"},
            {"base4", ", ."},
            {"shift1", "~ ` | \\ { } [ ] ^ ="},
            {"shift2", "@ # $ _ & - + < > /"},
            {"shift3", "* \" ' : ; ! ? %"},
            {"shift4", ", ."}};
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

std::string faultOf(const KeyboardLayout& layout) {
    const std::string fault = faultOf(layout.base, "base");
    return fault.empty() ? faultOf(layout.shifted, "shift") : fault;
}

bool isUtf8(const IniValues& values) {
    return std::all_of(values.begin(), values.end(),
                       [](const auto& value) { return g_utf8_validate(value.second.c_str(), -1, nullptr) != FALSE; });
}

KeyboardLayout layoutOf(const std::string& code, IniValues values) {
    KeyboardLayout layout;
    layout.code = code;
    layout.name = values["name"];
    layout.letters = values["letters"];
    layout.startsRight = values["starts"] == "right";
    for (std::size_t i = 0; i < KeyboardPage::kRows; ++i) {
        layout.base.rows[i] = keysOf(values["base" + std::to_string(i + 1)]);
        layout.shifted.rows[i] = keysOf(values["shift" + std::to_string(i + 1)]);
    }
    if (layout.name.empty()) layout.name = code;
    if (layout.letters.empty()) layout.letters = layout.base.rows[0].empty() ? code : layout.base.rows[0][0];
    return layout;
}

}  // namespace

KeyboardLayout loadKeyboardLayout(const std::filesystem::path& directory, const std::string& code) {
    const std::filesystem::path file = directory / (code + ".ini");
    std::string fault = "cannot be read";
    if (const std::optional<IniValues> values = readIniFile(file)) {
        KeyboardLayout layout = layoutOf(code, *values);
        fault = isUtf8(*values) ? faultOf(layout) : "is not UTF-8 text";
        if (fault.empty()) return layout;
    }
    std::cerr << "colour: keyboard layout " << file.string() << ": " << fault << "; built-in keys are used\n";
    return code == kSignsCode ? layoutOf(kSignsCode, builtInSigns()) : layoutOf(kEnglish, builtInEnglish());
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
