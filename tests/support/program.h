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
    std::string output;
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
    const auto output = folder.path() / "output";
    const auto errors = folder.path() / "errors";
    command += " >'" + output.string() + "' 2>'" + errors.string() + "' </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(output), contentOf(errors)};
}
