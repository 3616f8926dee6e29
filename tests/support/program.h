#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

/// How a run of the whole program ended.
struct ProgramResult {
    /// Exit status; -1 when a signal ended it.
    int status;
    std::string errors;
};

inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Runs the built program with these arguments and waits for its end.
inline ProgramResult runProgram(const std::vector<std::string>& arguments) {
    const TemporaryFolder folder;
    std::string command = "'" COLOUR_PROGRAM "'";
    for (const std::string& argument : arguments) command += " '" + argument + "'";
    const auto errors = folder / "errors";
    const int status = std::system((command + " >/dev/null 2>'" + errors.string() + "' </dev/null").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(errors)};
}

inline std::vector<std::string> linesOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// The panel that a session asks for in its first line.
inline std::string panelOf(const std::filesystem::path& session) {
    const std::string mark = "# panel: ";
    const std::string first = linesOf(session).at(0);
    return first.starts_with(mark) ? first.substr(mark.size()) : "1404x1872@300,colour";
}
