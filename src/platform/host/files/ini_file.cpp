#include "platform/host/files/ini_file.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <string_view>

namespace host {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kSpace = " \t\r";
    const std::size_t first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

/// Takes a line in; false when it is none of an ini file's. `section` ends in a dot, unless it is empty.
bool take(std::string_view line, std::string& section, IniValues& values) {
    if (line.empty() || line.front() == '#' || line.front() == ';') return true;
    if (std::any_of(line.begin(), line.end(), [](unsigned char c) { return c < ' ' && c != '\t'; })) return false;
    if (line.front() == '[') {
        if (line.back() != ']') return false;
        section = trimmed(line.substr(1, line.size() - 2));
        if (!section.empty()) section += '.';
        return true;
    }
    const std::size_t equals = line.find('=');
    const std::string_view key = trimmed(line.substr(0, equals));
    if (equals == std::string_view::npos || key.empty()) return false;
    values[section + std::string(key)] = trimmed(line.substr(equals + 1));
    return true;
}

}  // namespace

std::optional<IniValues> readIniFile(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return std::nullopt;
    IniValues values;
    std::string section;
    std::string text;
    for (int number = 1; std::getline(stream, text); ++number) {
        std::string_view line = text;
        if (number == 1 && line.starts_with(kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
        if (take(trimmed(line), section, values)) continue;
        std::cerr << "colour: " << file.string() << ":" << number << ": neither \"key = value\" nor \"[section]\"\n";
    }
    if (stream.bad()) return std::nullopt;
    return values;
}

}  // namespace host
