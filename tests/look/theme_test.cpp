#include "platform/host/files/theme.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <ranges>

#include "support/program.h"

namespace {

using host::Device;
using host::Theme;
using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

const std::filesystem::path kTheme = std::filesystem::path(COLOUR_SOURCE_DIR) / "theme";

Device panelOf(int dpi) { return {.dpi = dpi}; }

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
    std::vector<std::string> names = {"back",          "choose_color_arrow_down",
                                      "eraser",        "choose_color_arrow_up",
                                      "pen_undo",      "quillo_text_tool",
                                      "pen_redo",      "quillo_font_tool",
                                      "trash",         "broken_image",
                                      "explorer_exit", "explorer_previous",
                                      "explorer_next"};
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

TEST(Theme, DrawsEveryIconInTheSizeOfItsPlaceOnEveryPanel) {
    for (const Density& density : kDensities) {
        SCOPED_TRACE(density.dpi);
        const Device device = panelOf(density.dpi);
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

TEST(Theme, DrawsStraightLinesInWholePixels) {
    for (const Density& density : kDensities) {
        const Device device = panelOf(density.dpi);
        Theme theme(kTheme, device);
        const auto shaft = theme.picture("back");  // a level shaft through the middle
        ASSERT_NE(shaft, nullptr);
        int black = 0;
        for (int y = 0; y < shaft->height; ++y) {
            const int grey = host::bitmapRow(*shaft, y)[density.button * 5 / 8];
            EXPECT_TRUE(grey == 0 || grey == 255) << density.dpi << " dpi, row " << y << " is " << grey;
            black += grey == 0 ? 1 : 0;
        }
        EXPECT_EQ(black, density.button / 16) << density.dpi;
    }
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

TEST(Theme, NumberThatIsNoneIsToldAndGivesTheFallback) {
    const TemporaryFolder folder;
    folder.write("theme.ini", "size=32\nlarge=99999999999\nword=28pt\n");
    const Device device;
    const Theme theme(folder.path(), device);
    EXPECT_EQ(theme.number("size", 7), 32);
    EXPECT_EQ(theme.number("absent", 7), 7);
    for (const char* name : {"large", "word"}) {
        CaptureStderr();
        EXPECT_EQ(theme.number(name, 7), 7);
        EXPECT_THAT(GetCapturedStderr(), HasSubstr(name));
    }
}

TEST(Theme, DamagedIconIsToldAndNotDrawn) {
    const TemporaryFolder folder;
    const std::string whole = contentOf(kTheme / "icons/trash.svg");
    folder.write("theme.ini", "");
    const Device device = panelOf(20);
    for (std::size_t length = 0; length + 1 < whole.size(); length += 2) {
        folder.write("icons/cut.svg", whole.substr(0, length));
        CaptureStderr();
        Theme theme(folder.path(), device);
        EXPECT_EQ(theme.picture("cut"), nullptr) << "cut at " << length;
        EXPECT_THAT(GetCapturedStderr(), HasSubstr("cut.svg")) << "cut at " << length;
    }
    for (std::size_t bit = 0; bit < whole.size() * 8; bit += 3) {
        std::string flipped = whole;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
        folder.write("icons/flipped.svg", flipped);
        CaptureStderr();
        Theme theme(folder.path(), device);
        const bool drawn = theme.picture("flipped") != nullptr;
        EXPECT_EQ(GetCapturedStderr().empty(), drawn) << "bit " << bit;
    }
}

TEST(Theme, ReadsSizesByIconByFamilyAndByDefault) {
    const TemporaryFolder folder;
    for (const char* name : {"one", "pen_a", "pen_b", "bad"})
        folder.write("icons/" + std::string(name) + ".svg", contentOf(kTheme / "icons/back.svg"));
    folder.write("theme.ini",
                 "[size]\ndefault = 16\npen = 32\npen_b = 8 x 24\n[alias]\nother = one\nloop = loop_inv\n");
    const Device device = panelOf(160);
    Theme theme(folder.path(), device);
    for (const auto& [name, size] : {std::pair("one", host::Size{16, 16}), std::pair("other", host::Size{16, 16}),
                                     std::pair("pen_a", host::Size{32, 32}), std::pair("pen_b", host::Size{8, 24})})
        expectIcon(theme, name, size, 8);
    EXPECT_EQ(theme.picture("loop"), nullptr);
    for (const char* size : {"wide", "3 x", "3 y 4", "-3", "3 x 0", "3 x 4 x 5"}) {
        folder.write("theme.ini", std::string("[size]\nbad = ") + size + "\n");
        CaptureStderr();
        Theme other(folder.path(), device);
        expectIcon(other, "bad", {50, 50}, 8);
        EXPECT_THAT(GetCapturedStderr(), HasSubstr(size));
    }
}

}  // namespace
