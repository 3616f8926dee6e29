// From start to end without a display, against a program that links the same libraries and returns at once.

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "paired.h"

namespace {

struct Run {
    double microseconds;  ///< of processor time
    double resident;      ///< MiB at the most
};

/// Runs a program to its end.
Run run(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    struct rusage usage {};
    if (posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0) {
        wait4(child, &status, 0, &usage);
    }
    if (status != 0) throw std::runtime_error(words[0] + " did not run");
    const auto micro = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_usec);
    };
    return {micro(usage.ru_utime) + micro(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / 1024};
}

void HeadlessStart(benchmark::State& state) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "colour-bench";
    std::filesystem::create_directories(folder);
    const std::string script = folder / "start.session";
    std::ofstream(script) << "create\nquit\n";
    const std::string storage = folder / "storage";

    std::vector<double> ours;
    std::vector<double> peer;
    for (auto _ : state) {
        const Run whole = run({COLOUR_PROGRAM, "--display", "headless", "--storage", storage, "--script", script});
        ours.push_back(whole.microseconds);
        peer.push_back(run({BARE_PROGRAM}).microseconds);
        state.counters["resident_MiB"] = whole.resident;
    }
    reportRatio(state, ours, peer);
}
BENCHMARK(HeadlessStart)->Iterations(50);

}  // namespace
