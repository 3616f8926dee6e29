#include "platform/host/files/theme.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <ranges>
#include <sstream>

#include "platform/host/screen/bitmap_record.h"
#include "support/temporary_folder.h"

namespace {

using host::Device;
using host::Theme;
using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

const std::filesystem::path kTheme = std::filesystem::path(COLOUR_SOURCE_DIR) / "theme";

std::vector<int> bytesOf(const bitmap_s& bitmap) {
    const std::uint8_t* first = bitmap_pixels(&bitmap);
    return {first, first + host::pixelBytes(bitmap)};
}

/// Sides in pixels, counted by hand from the design sizes.
struct Density {
    int dpi, button, key, newPicture, pointerWidth, pointerHeight;
};
constexpr Density kDensities[] = {
    {167, 52, 32, 83, 13, 42}, {212, 66, 41, 106, 17, 54}, {227, 71, 43, 113, 18, 58}, {300, 93, 58, 150, 24, 76}};

std::vector<std::string> buttonIcons() {
    std::istringstream words(
        "back choose_color_arrow_down choose_color_arrow_up eraser quillo_text_tool quillo_font_tool pen_undo pen_redo "
        "trash broken_image explorer_exit explorer_previous explorer_next");
    std::vector<std::string> names{std::istream_iterator<std::string>(words), {}};
    for (int n = 1; n <= 5; ++n) {
        names.push_back("pen_thickness_" + std::to_string(n));
        names.push_back("pen_thickness_" + std::to_string(n) + "_arrow");
    }
    return names;
}

void expectIcon(Theme& theme, const std::string& name, host::Size size, int depth) {
    const auto picture = theme.picture(name);
    ASSERT_NE(picture, nullptr) << name;
    EXPECT_EQ((host::Size{picture->width, picture->height}), size) << name;
    EXPECT_EQ(picture->depth, depth) << name;
    const std::vector<int> bytes = bytesOf(*picture);
    const auto [least, most] = std::ranges::minmax(bytes);
    EXPECT_LT(least, most) << name << " is blank";
}

TEST(Theme, OfAFewIconsTakesTheOtherFoldersFromTheInstalledOne) {
    const TemporaryFolder folder;
    folder.write("theme.ini", "");
    folder.write("languages/en.ini", "");
    const Device device;
    const Theme theme(folder.path(), device);
    EXPECT_EQ(theme.folder("languages"), folder.path() / "languages");
    EXPECT_TRUE(std::filesystem::equivalent(theme.folder("keyboards"), kTheme / "keyboards"));
}

TEST(Theme, DrawsEveryIconInTheSizeOfItsPlaceOnEveryPanel) {
    for (const Density& density : kDensities) {
        SCOPED_TRACE(density.dpi);
        const Device device{.dpi = density.dpi};
        Theme theme(kTheme, device);
        for (const std::string& name : buttonIcons())
            expectIcon(theme, name, {density.button, density.button}, name.starts_with("explorer") ? 32 : 8);
        for (const char* key :
             {"backspace", "shift", "shift_locked", "return", "language", "left", "right", "up", "down", "clear"})
            expectIcon(theme, "key_" + std::string(key), {density.key, density.key}, 32);
        expectIcon(theme, "explorer_new", {density.newPicture, density.newPicture}, 32);
        expectIcon(theme, "context_menu_pointer", {density.pointerWidth, density.pointerHeight}, 32);
    }
    const Device larger{.dpi = 300, .scale = 1.5};
    Theme theme(kTheme, larger);
    expectIcon(theme, "back", {140, 140}, 8);
}

TEST(Theme, InvertsNamesWithoutAFileAndSharesPictures) {
    const Device device;
    Theme theme(kTheme, device);
    std::vector<std::string> names = buttonIcons();
    names.push_back("key_up");
    for (const std::string& name : names) {
        const std::string inverted = name == "trash" ? "ps_trash_inv" : name + "_inv";
        const auto normal = theme.picture(name);
        const auto inverse = theme.picture(inverted);
        ASSERT_TRUE(normal != nullptr && inverse != nullptr) << name;
        EXPECT_TRUE(theme.picture(name) == normal && theme.picture(inverted) == inverse) << name;
        std::vector<int> expected = bytesOf(*normal);
        for (std::size_t i = 0; i < expected.size(); ++i)
            if (normal->depth == 8 || i % 4 != 3) expected[i] = 255 - expected[i];  // transparency stays
        EXPECT_EQ(bytesOf(*inverse), expected) << name;
    }
}

TEST(Theme, WhatIsMissingIsToldOnceAndLeavesTheApplicationsPicture) {
    const Device device;
    Theme whole(kTheme, device);
    CaptureStderr();
    for (const char* name : {"", "no_such_icon", "no_such_icon_inv", "../theme", "no_such_icon"})
        EXPECT_EQ(whole.picture(name), nullptr) << name;
    const std::string unknown = GetCapturedStderr();
    EXPECT_THAT(unknown, HasSubstr("no_such_icon.svg"));
    EXPECT_EQ(std::ranges::count(unknown, '\n'), 1) << unknown;
    CaptureStderr();
    Theme theme("/nowhere/theme", device);
    EXPECT_EQ(theme.picture("back"), nullptr);
    EXPECT_EQ(theme.value("font_sizes"), nullptr);
    const auto broken = theme.picture("broken_image");
    const std::string said = GetCapturedStderr();
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
    ASSERT_NE(broken, nullptr);
    EXPECT_EQ(broken->width, 48);
    EXPECT_GT(std::ranges::count_if(bytesOf(*broken), [](int byte) { return byte != 0xFF; }), 500);
}

}  // namespace
