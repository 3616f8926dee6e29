#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace host {

using IniValues = std::map<std::string, std::string>;

/// Reads a UTF-8 file of "key = value" lines. A key below a "[section]" line is named "section.key"; of a repeated
/// key the last value counts. Space around keys and values does not count; empty lines and lines that begin
/// with '#' or ';' say nothing. Any other line is skipped and told on standard error. Null when the file cannot be
/// read, which the caller tells: it knows whether the file has to be there.
[[nodiscard]] std::optional<IniValues> readIniFile(const std::filesystem::path& file);

}  // namespace host
