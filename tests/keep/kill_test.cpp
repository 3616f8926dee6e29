// A program that is killed loses no more than what was drawn in its last instants.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <sstream>
#include <thread>

#include "platform/host/keep/recovery.h"
#include "support/process.h"
#include "support/program.h"

namespace fs = std::filesystem;

namespace {

/// A session in steps, each of which is one finished change to the picture PATH.
constexpr const char* kSteps[] = {
    "down 300 400\nmove 340 480\nmove 380 420\nup 420 500",
    "down 900 1500\nmove 700 1200\nup 500 1700",
    "tap 1078 50",                                         // undo
    "tap 1171 50",                                         // redo
    "tap 568 50\ndown 300 400\nmove 340 440\nup 380 480",  // the eraser
    "tap 738 50\ndown 200 900\nreport 900 1200\nup 900 1200\ntype \"Words in a box\"",
    "tap 568 50\ndown 900 1500\nup 700 1400",  // this commits the text
    "tap 1078 50",
    "tap 1078 50",
    // Left, and opened again.
    "tap 58 50\nopen \"PATH\"\ntap 398 50\ndown 100 1700\nmove 700 1720\nup 1300 1700",
    "down 100 1750\nup 1300 1780",
};
constexpr std::size_t kAll = std::size(kSteps);

/// A script that takes the first steps, with something behind each.
std::string session(const std::string& path, std::size_t steps, const std::string& behind) {
    // The tool is the pen, whatever it was in the picture before.
    std::string script = "open \"PATH\"\ntap 738 50\ntap 398 50\n";
    for (std::size_t i = 0; i < steps; ++i) script += kSteps[i] + ("\n" + behind);
    for (std::size_t at = 0; (at = script.find("PATH", at)) != std::string::npos;) script.replace(at, 4, path);
    return script;
}

/// What the picture is when the person leaves it after the first steps, for all numbers of steps.
std::vector<std::string> pagesAfterSteps() {
    const TemporaryFolder folder;
    std::string script;
    for (std::size_t i = 0; i <= kAll; ++i)
        script += session("/mnt/ext1/My pictures/" + std::to_string(i) + ".png", i, "") + "tap 58 50\n";
    folder.write("session", script);
    const auto run = runProgram(
        {"--display", "headless", "--language", "en", "--storage", folder.path(), "--script", folder / "session"});
    EXPECT_EQ(run.status, 0) << run.errors;
    std::vector<std::string> pages;
    for (std::size_t i = 0; i <= kAll; ++i)
        pages.push_back(contentOf(folder / ("My pictures/" + std::to_string(i) + ".png")));
    return pages;
}

/// The steps that a traced run has finished: each is followed by an event of its own.
std::size_t finishedSteps(const fs::path& trace) {
    std::size_t steps = 0;
    for (const std::string& line : linesOf(trace)) steps += line.starts_with("> event 999 ") ? 1 : 0;
    return steps;
}

}  // namespace

class Killed : public testing::TestWithParam<unsigned> {};

TEST_P(Killed, AtAnyInstantItsPageComesBack) {
    constexpr int kKills = 10;
    const std::vector<std::string> pages = pagesAfterSteps();
    const std::string script = session("/mnt/ext1/My pictures/a.png", kAll, "event 999 0 0\nwait 20\n");
    std::mt19937 random(GetParam());
    for (int kill = 0; kill < kKills; ++kill) {
        const TemporaryFolder folder;
        const fs::path trace = folder / "trace";
        folder.write("session", script + "wait 60000\n");
        Process program("env -C '" + folder.path().string() +
                        "' '" COLOUR_PROGRAM
                        "' --display browser --language en --storage . --script session --trace trace");
        while (contentOf(trace).find("> open") == std::string::npos)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 900));
        const std::size_t earlier = finishedSteps(trace);
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        program.end(SIGKILL);
        const std::size_t last = std::min(finishedSteps(trace) + 1, kAll);

        // What the next start does.
        for (const host::LeftPage& left : host::recoverPages(host::Storage(folder.path()))) EXPECT_EQ(left.error, "");
        const std::string found = contentOf(folder / "My pictures/a.png");
        bool expected = false;
        for (std::size_t i = earlier; i <= last; ++i) expected = expected || found == pages[i];
        EXPECT_TRUE(expected) << "killed between steps " << earlier << " and " << last;
        EXPECT_TRUE(fs::is_empty(folder / ".recovery"));
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Killed, testing::Values(1, 2, 3, 4));
