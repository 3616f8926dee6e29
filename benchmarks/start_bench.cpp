// From start to end without a display, against a program that links the same libraries and returns at once.

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "paired.h"

namespace {

/// Runs a program to its end and returns the most memory it had resident, in KiB.
long run(const std::vector<const char*>& words) {
    std::vector<char*> arguments;
    for (const char* word : words) arguments.push_back(const_cast<char*>(word));
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) return 0;
    int status = 0;
    struct rusage usage {};
    wait4(child, &status, 0, &usage);
    return usage.ru_maxrss;
}

void HeadlessStart(benchmark::State& state) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "colour-bench";
    std::filesystem::create_directories(folder);
    const std::string script = folder / "start.session";
    std::ofstream(script) << "create\nquit\n";
    const std::string storage = folder / "storage";

    long resident = 0;
    comparePairs(
        state,
        [&] {
            resident = run(
                {COLOUR_PROGRAM, "--display", "headless", "--storage", storage.c_str(), "--script", script.c_str()});
        },
        [] { run({BARE_PROGRAM}); });
    state.counters["resident_MiB"] = static_cast<double>(resident) / 1024;
}
BENCHMARK(HeadlessStart)->Iterations(50);

}  // namespace
