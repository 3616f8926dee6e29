#include "platform/host/files/theme.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <ranges>

#include "look/write_file.h"
#include "support/program.h"

namespace {

using host::Device;
using host::Theme;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

const std::filesystem::path kTheme = std::filesystem::path(COLOUR_SOURCE_DIR) / "theme";

Device panelOf(int dpi) {
    Device device;
    device.dpi = dpi;
    return device;
}

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
}

TEST(Theme, FollowsTheUsersScale) {
    Device device = panelOf(300);
    device.scale = 1.5;
    Theme theme(kTheme, device);
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

TEST(Theme, InvertsNamesWithoutAFile) {
    const Device device;
    Theme theme(kTheme, device);
    std::vector<std::string> names = buttonIcons();
    std::erase_if(names, [](const std::string& name) { return name.starts_with("explorer"); });
    for (const std::string& name : names) {
        const auto normal = theme.picture(name);
        const auto inverse = theme.picture(name == "trash" ? "ps_trash_inv" : name + "_inv");
        ASSERT_TRUE(normal != nullptr && inverse != nullptr) << name;
        std::vector<int> sums = bytesOf(*normal);
        std::ranges::transform(sums, bytesOf(*inverse), sums.begin(), std::plus());
        EXPECT_THAT(sums, ::testing::Each(255)) << name;
    }
}

TEST(Theme, KeepsTheTransparencyOfAnInvertedIcon) {
    const Device device;
    Theme theme(kTheme, device);
    const std::vector<int> normal = bytesOf(*theme.picture("key_up"));
    const std::vector<int> inverse = bytesOf(*theme.picture("key_up_inv"));
    for (std::size_t i = 0; i < normal.size(); ++i) ASSERT_EQ(inverse[i], i % 4 == 3 ? normal[i] : 255 - normal[i]);
}

TEST(Theme, PointerIsOpenTowardsThePopup) {
    const Device device;
    Theme theme(kTheme, device);
    const auto pointer = theme.picture("context_menu_pointer");  // points left; the program turns it upwards
    const auto pixel = [&](int x, int y) { return host::bitmapRow(*pointer, y) + std::ptrdiff_t{x} * 4; };
    EXPECT_EQ(pixel(0, 0)[3], 0) << "beside the tip";
    EXPECT_EQ(pixel(23, 70)[3], 0) << "beside the base";
    EXPECT_THAT(std::vector<int>(pixel(23, 24), pixel(23, 24) + 4), ::testing::Each(255)) << "the base, white";
    EXPECT_THAT(std::vector<int>(pixel(3, 24), pixel(3, 24) + 4), ::testing::ElementsAre(0, 0, 0, 255)) << "the tip";
}

TEST(Theme, SharesPictures) {
    const Device device;
    Theme theme(kTheme, device);
    EXPECT_EQ(theme.picture("back"), theme.picture("back"));
    EXPECT_EQ(theme.picture("ps_trash_inv").get(), theme.picture("ps_trash_inv").get());
}

TEST(Theme, HasNoPictureForAnUnknownName) {
    const Device device;
    Theme theme(kTheme, device);
    CaptureStderr();
    for (const char* name : {"", "no_such_icon", "no_such_icon_inv", "../theme", "no_such_icon"})
        EXPECT_EQ(theme.picture(name), nullptr) << name;
    const std::string said = GetCapturedStderr();
    EXPECT_THAT(said, HasSubstr("no_such_icon.svg"));
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
}

TEST(Theme, MissingFolderIsToldOnceAndLeavesTheApplicationsPicture) {
    const Device device;
    CaptureStderr();
    Theme theme("/nowhere/theme", device);
    EXPECT_EQ(theme.picture("back"), nullptr);
    EXPECT_EQ(theme.value("font_sizes"), nullptr);
    const auto broken = theme.picture("broken_image");
    const std::string said = GetCapturedStderr();
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
    ASSERT_NE(broken, nullptr);
    EXPECT_EQ((std::vector<int>{broken->width, broken->height, broken->depth, broken->scanline}),
              (std::vector<int>{48, 48, 4, 24}));
    const std::vector<int> pixels = bytesOf(*broken);
    EXPECT_EQ(pixels.front(), 0xFF) << "stands on white";
    EXPECT_GT(std::ranges::count_if(pixels, [](int byte) { return byte != 0xFF; }), 500);
}

TEST(Theme, NumberThatIsNoneIsToldAndGivesTheFallback) {
    const TemporaryFolder folder;
    writeFile(folder.path() / "theme.ini", "size=32\nlarge=99999999999\nword=28pt\n");
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
    writeFile(folder.path() / "theme.ini", "");
    const Device device = panelOf(20);
    for (std::size_t length = 0; length + 1 < whole.size(); length += 2) {
        writeFile(folder.path() / "icons/cut.svg", whole.substr(0, length));
        CaptureStderr();
        Theme theme(folder.path(), device);
        EXPECT_EQ(theme.picture("cut"), nullptr) << "cut at " << length;
        EXPECT_THAT(GetCapturedStderr(), HasSubstr("cut.svg")) << "cut at " << length;
    }
    for (std::size_t bit = 0; bit < whole.size() * 8; bit += 3) {
        std::string flipped = whole;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
        writeFile(folder.path() / "icons/flipped.svg", flipped);
        CaptureStderr();
        Theme theme(folder.path(), device);
        const bool drawn = theme.picture("flipped") != nullptr;
        EXPECT_EQ(GetCapturedStderr().empty(), drawn) << "bit " << bit;
    }
}

TEST(Theme, ReadsSizesByIconByFamilyAndByDefault) {
    const TemporaryFolder folder;
    for (const char* name : {"one", "pen_a", "pen_b", "bad"})
        writeFile(folder.path() / "icons" / (std::string(name) + ".svg"), contentOf(kTheme / "icons/back.svg"));
    writeFile(folder.path() / "theme.ini",
              "[size]\ndefault = 16\npen = 32\npen_b = 8 x 24\n[alias]\nother = one\nloop = loop_inv\n");
    const Device device = panelOf(160);
    Theme theme(folder.path(), device);
    expectIcon(theme, "one", {16, 16}, 8);
    expectIcon(theme, "pen_a", {32, 32}, 8);
    expectIcon(theme, "pen_b", {8, 24}, 8);
    EXPECT_EQ(bytesOf(*theme.picture("other")), bytesOf(*theme.picture("one")));
    EXPECT_EQ(theme.picture("loop"), nullptr);
    for (const char* size : {"wide", "3 x", "3 y 4", "-3", "3 x 0", "3 x 4 x 5"}) {
        writeFile(folder.path() / "theme.ini", std::string("[size]\nbad = ") + size + "\n");
        CaptureStderr();
        Theme other(folder.path(), device);
        expectIcon(other, "bad", {50, 50}, 8);
        EXPECT_THAT(GetCapturedStderr(), HasSubstr(size));
    }
}

TEST(FindTheme, PrefersTheCommandLineThenTheEnvironment) {
    ASSERT_EQ(setenv("COLOUR_THEME", "/from/environment", 1), 0);
    EXPECT_EQ(host::findTheme("/chosen"), "/chosen");
    EXPECT_EQ(host::findTheme(""), "/from/environment");
    ASSERT_EQ(unsetenv("COLOUR_THEME"), 0);
    EXPECT_TRUE(std::filesystem::exists(host::findTheme("") / "theme.ini"));
}

}  // namespace
