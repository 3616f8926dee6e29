#include "platform/host/files/ini_file.h"

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

bool hasControlCharacter(std::string_view line) {
    for (const char c : line)
        if (static_cast<unsigned char>(c) < ' ' && c != '\t') return true;
    return false;
}

/// Takes the file line by line and remembers the section.
class IniReader {
public:
    /// False when the line is none of an ini file's.
    bool take(std::string_view line) {
        if (line.empty() || line.front() == '#' || line.front() == ';') return true;
        if (hasControlCharacter(line)) return false;
        return line.front() == '[' ? takeSection(line) : takeValue(line);
    }

    IniValues values;

private:
    bool takeSection(std::string_view line) {
        if (line.back() != ']') return false;
        const std::string_view name = trimmed(line.substr(1, line.size() - 2));
        section_ = name.empty() ? std::string() : std::string(name) + ".";
        return true;
    }

    bool takeValue(std::string_view line) {
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) return false;
        const std::string_view key = trimmed(line.substr(0, equals));
        if (key.empty()) return false;
        values[section_ + std::string(key)] = trimmed(line.substr(equals + 1));
        return true;
    }

    std::string section_;
};

}  // namespace

std::optional<IniValues> readIniFile(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return std::nullopt;
    IniReader reader;
    std::string text;
    for (int number = 1; std::getline(stream, text); ++number) {
        std::string_view line = text;
        if (number == 1 && line.starts_with(kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
        if (reader.take(trimmed(line))) continue;
        std::cerr << "colour: " << file.string() << ":" << number << ": neither \"key = value\" nor \"[section]\"\n";
    }
    if (stream.bad()) return std::nullopt;
    return std::move(reader.values);
}

}  // namespace host
