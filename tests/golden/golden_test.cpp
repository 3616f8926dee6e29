// Plays each session and compares the picture it takes with the approved one beside it. COLOUR_APPROVE=1 takes the
// pictures anew: look at each before committing it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "platform/host/files/picture_file.h"
#include "support/program.h"

namespace fs = std::filesystem;

namespace {

const fs::path kFolder = fs::path(COLOUR_SOURCE_DIR) / "tests/golden";

/// Share of the pixels that differ visibly; 1 for another size. Fonts and compilers may move an edge by a shade.
double difference(const bitmap_s& left, const bitmap_s& right) {
    constexpr int kShade = 24;
    if (left.width != right.width || left.height != right.height || left.depth != right.depth) return 1;
    const std::size_t bytes = host::pixelBytes(left);
    std::size_t different = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        if (std::abs(bitmap_pixels(&left)[i] - bitmap_pixels(&right)[i]) > kShade) ++different;
    }
    return static_cast<double>(different) / static_cast<double>(bytes);
}

class Golden : public testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(Golden, LooksAsApproved) {
    constexpr double kLargestDifference = 0.001;
    const TemporaryFolder folder;
    const fs::path session = kFolder / (std::string(GetParam()) + ".session");
    const fs::path approved = kFolder / (std::string(GetParam()) + ".png");
    fs::current_path(folder.path());
    const ProgramResult result = runProgram({"--display", "headless", "--language", "en", "--panel", panelOf(session),
                                             "--storage", folder.path().string(), "--script", session.string()});
    ASSERT_EQ(result.status, 0) << result.errors;
    if (std::getenv("COLOUR_APPROVE") != nullptr) {
        fs::copy_file("golden.png", approved, fs::copy_options::overwrite_existing);
    }

    std::string error;
    const host::BitmapPtr actual = host::loadPicture("golden.png", error);
    const host::BitmapPtr expected = host::loadPicture(approved, error);
    ASSERT_TRUE(actual != nullptr && expected != nullptr) << error;
    const fs::path kept = fs::temp_directory_path() / (std::string(GetParam()) + ".actual.png");
    const double different = difference(*actual, *expected);
    if (different > kLargestDifference) fs::copy_file("golden.png", kept, fs::copy_options::overwrite_existing);
    EXPECT_LE(different, kLargestDifference) << "see " << kept << " beside " << approved;
}

INSTANTIATE_TEST_SUITE_P(Picture, Golden, testing::Values("colour_popup", "grey_popup", "dialog"),
                         [](const auto& picture) { return picture.param; });
