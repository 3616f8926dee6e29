#include "platform/host/files/theme.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "files/scratch.h"

namespace {

using host::Device;
using host::Theme;
using namespace testing;
using internal::CaptureStderr;
using internal::GetCapturedStderr;

const std::filesystem::path kTheme = std::filesystem::path(COLOUR_SOURCE_DIR) / "theme";

void expectIcon(Theme& theme, const std::string& name, host::Size size, int depth) {
    SCOPED_TRACE(name);
    const std::string inverted = name == "trash" ? "ps_trash_inv" : name + "_inv";
    const auto picture = theme.picture(name), inverse = theme.picture(inverted);
    ASSERT_TRUE(picture != nullptr && inverse != nullptr);
    EXPECT_TRUE(theme.picture(name) == picture && theme.picture(inverted) == inverse) << "shared";
    EXPECT_EQ((host::Size{picture->width, picture->height}), size);
    EXPECT_EQ(picture->depth, depth);
    scratch::Bytes bytes = scratch::pixels(*picture);
    const auto [least, most] = std::ranges::minmax(bytes);
    EXPECT_LT(least, most) << "blank";
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (depth == 8 || i % 4 != 3) bytes[i] ^= 0xFF;  // transparency stays
    EXPECT_EQ(scratch::pixels(*inverse), bytes);
}

TEST(Theme, DrawsEveryIconAndItsInverseInTheSizeOfItsPlaceOnEveryPanel) {
    constexpr const char* kIcons =
        "back choose_color_arrow_down choose_color_arrow_up eraser quillo_text_tool quillo_font_tool pen_undo pen_redo "
        "trash broken_image pen_thickness_1 pen_thickness_2 pen_thickness_3 pen_thickness_4 pen_thickness_5 "
        "pen_thickness_1_arrow pen_thickness_2_arrow pen_thickness_3_arrow pen_thickness_4_arrow pen_thickness_5_arrow "
        "explorer_exit explorer_previous explorer_next explorer_new context_menu_pointer key_backspace key_shift "
        "key_shift_locked key_return key_language key_left key_right key_up key_down key_clear";
    // Sides in pixels, counted by hand from the design sizes.
    for (const auto& [dpi, scale, button, key, newPicture, pointer] :
         {std::tuple(167, 1.0, 52, 32, 83, host::Size{13, 42}), {300, 1.5, 140, 87, 225, {36, 115}}}) {
        SCOPED_TRACE(dpi);
        const Device device{.dpi = dpi, .scale = scale};
        Theme theme(kTheme, device);
        std::istringstream names(kIcons);
        for (std::string name; names >> name;) {
            host::Size size{button, button};
            if (name.starts_with("key_")) size = {key, key};
            if (name == "explorer_new") size = {newPicture, newPicture};
            if (name == "context_menu_pointer") size = pointer;
            expectIcon(theme, name, size, size.w != button || name.starts_with("explorer_") ? 32 : 8);
        }
    }
}

TEST(Theme, OfAFewIconsTakesTheOtherFoldersFromTheInstalledOne) {
    const TemporaryFolder folder;
    folder.write("theme.ini", "");
    folder.write("languages/en.ini", "");
    const Device device;
    const Theme theme(folder.path(), device);
    EXPECT_EQ(theme.folder("languages"), folder / "languages");
    EXPECT_TRUE(std::filesystem::equivalent(theme.folder("keyboards"), kTheme / "keyboards"));
}

TEST(Theme, WhatIsMissingIsToldOnceAndLeavesTheApplicationsPicture) {
    const Device device;
    CaptureStderr();
    Theme whole(kTheme, device);
    for (const char* name : {"", "no_such_icon", "no_such_icon_inv", "../theme", "no_such_icon"})
        EXPECT_EQ(whole.picture(name), nullptr) << name;
    EXPECT_THAT(GetCapturedStderr(), MatchesRegex("[^\n]*no_such_icon.svg[^\n]*\n"));
    CaptureStderr();
    Theme theme("/nowhere/theme", device);
    EXPECT_EQ(theme.picture("back"), nullptr);
    EXPECT_EQ(theme.value("font_sizes"), nullptr);
    const auto broken = theme.picture("broken_image");
    EXPECT_THAT(GetCapturedStderr(), MatchesRegex("[^\n]*\n"));
    ASSERT_NE(broken, nullptr);
    EXPECT_GT(std::ranges::count_if(scratch::pixels(*broken), [](int byte) { return byte != 0xFF; }), 500);
}

}  // namespace
