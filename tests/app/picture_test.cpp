#include <gtest/gtest.h>

#include <filesystem>

#include "platform/host/files/picture_file.h"
#include "support/app.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kPath = "/mnt/ext1/My pictures/test.bmp";
constexpr int kCanvasTop = 108;
constexpr int kCanvasWidth = 1404;
constexpr int kCanvasHeight = 1764;

void savePicture(const fs::path& file, int width, int height, std::uint8_t value) {
    fs::create_directories(file.parent_path());
    const host::BitmapPtr picture = host::makeBitmap(width, height, 24);
    std::fill_n(bitmap_pixels(picture.get()), host::pixelBytes(*picture), value);
    std::string error;
    ASSERT_TRUE(host::savePicture(file, *picture, error)) << error;
}

class Picture : public testing::Test {
protected:
    App app;
};

}  // namespace

TEST_F(Picture, IsShownCentredAndUnscaled) {
    savePicture(app.file(kPath), kCanvasWidth - 5, 101, 0x40);
    app.open(kPath);
    const int top = kCanvasTop + (kCanvasHeight - 101) / 2;
    EXPECT_EQ(App::pixel(1, top), kWhite);
    EXPECT_EQ(App::pixel(2, top), 0x404040);
    EXPECT_EQ(App::pixel(2, top - 1), kWhite);
    EXPECT_EQ(App::pixel(kCanvasWidth - 4, top + 100), 0x404040);
    EXPECT_EQ(App::pixel(kCanvasWidth - 3, top + 100), kWhite);
}

TEST_F(Picture, ThatDoesNotLoadIsAWhitePageAndKeepsItsPath) {
    app.open("/mnt/ext1/My pictures/none.bmp");
    EXPECT_EQ(App::pixel(700, 900), kWhite);
    app.tap(700, 900);
    app.tap(58, 50);
    EXPECT_TRUE(fs::exists(app.file("/mnt/ext1/My pictures/none.bmp")));
}

TEST_F(Picture, ComesBackAsItWasDrawn) {
    app.create();
    app.down(300, 400);
    app.move(340, 480);
    app.up(420, 500);
    const host::Framebuffer drawn = App::screenshot();
    app.tap(58, 50);
    app.open("/mnt/ext1/My pictures/picture_1700000000.bmp");
    // The "back" button was pressed in between; the repaint shows it released again.
    EXPECT_TRUE(App::screenshot() == drawn);
}

TEST_F(Picture, MadeWhiteAgainLosesItsFile) {
    savePicture(app.file(kPath), 40, 40, 0xFF);
    app.open(kPath);
    app.tap(58, 50);
    EXPECT_FALSE(fs::exists(app.file(kPath)));
}
