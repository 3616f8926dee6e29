// Plays every recorded session headless and compares its trace, line for line, with the approved one beside it.
// COLOUR_APPROVE=1 writes the traces anew: read the difference before committing it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

const fs::path kSource = COLOUR_SOURCE_DIR;

std::vector<fs::path> sessions() {
    std::vector<fs::path> found = {kSource / "docs/first_picture.session"};
    for (const auto& entry : fs::directory_iterator(kSource / "tests/recorded")) {
        if (entry.path().extension() == ".session") found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string nameOf(const testing::TestParamInfo<fs::path>& info) { return info.param.stem().string(); }

// A dashed frame is a thousand pixels; one line that counts and sums them up says as much.
std::vector<std::string> condensed(const std::vector<std::string>& lines) {
    std::vector<std::string> result;
    std::size_t pixels = 0;
    std::uint32_t sum = 0;
    const auto flush = [&] {
        if (pixels > 0) result.push_back("DrawPixel × " + std::to_string(pixels) + " " + std::to_string(sum));
        pixels = sum = 0;
    };
    for (const std::string& line : lines) {
        if (line.starts_with("DrawPixel ")) {
            ++pixels;
            for (const char c : line) sum = sum * 31 + static_cast<unsigned char>(c);
            continue;
        }
        flush();
        result.push_back(line);
    }
    flush();
    return result;
}

// The way to the first repaint is the same for all sessions on one panel; these two show it.
bool showsOpening(const fs::path& session) {
    return session.stem() == "first_picture" || session.stem() == "grey_panel";
}

std::vector<std::string> withoutOpening(const std::vector<std::string>& lines) {
    const auto repainted = std::find(lines.begin(), lines.end(), "< 1");
    return {repainted == lines.end() ? lines.begin() : repainted + 1, lines.end()};
}

void write(const fs::path& file, const std::vector<std::string>& lines) {
    std::ofstream stream(file);
    for (const std::string& line : lines) stream << line << '\n';
}

class Recorded : public testing::TestWithParam<fs::path> {};

}  // namespace

TEST_P(Recorded, CrossesTheBorderAsApproved) {
    const fs::path session = GetParam();
    const TemporaryFolder folder;
    const fs::path trace = folder.path() / "trace";
    const ProgramResult result =
        runProgram({"--display", "headless", "--language", "en", "--panel", panelOf(session), "--storage",
                    (folder.path() / "storage").string(), "--script", session.string(), "--trace", trace.string()});
    ASSERT_EQ(result.status, 0) << result.errors;

    std::vector<std::string> actual = condensed(linesOf(trace));
    if (!showsOpening(session)) actual = withoutOpening(actual);
    const fs::path approved = kSource / "tests/recorded" / session.stem().concat(".trace");
    if (std::getenv("COLOUR_APPROVE") != nullptr) write(approved, actual);
    const std::vector<std::string> expected = linesOf(approved);

    const auto [mine, theirs] = std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
    if (mine == actual.end() && theirs == expected.end()) return;
    const fs::path kept = fs::temp_directory_path() / session.stem().concat(".actual.trace");
    write(kept, actual);
    FAIL() << approved.string() << ':' << (theirs - expected.begin()) + 1
           << "\n  approved: " << (theirs == expected.end() ? "(end)" : *theirs)
           << "\n  actual:   " << (mine == actual.end() ? "(end)" : *mine) << "\n  whole trace: " << kept.string();
}

INSTANTIATE_TEST_SUITE_P(Session, Recorded, testing::ValuesIn(sessions()), nameOf);
