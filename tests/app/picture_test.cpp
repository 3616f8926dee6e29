#include <gtest/gtest.h>

#include <filesystem>

#include "platform/host/files/picture_file.h"
#include "support/app.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kPath = "/mnt/ext1/My pictures/test.bmp";
constexpr host::Rect kCanvas{0, 108, 1404, 1764};

struct Picture : testing::Test {
    void save(int width, int height, std::uint8_t value) {
        const host::BitmapPtr picture = host::makeBitmap(width, height, 24);
        std::fill_n(bitmap_pixels(picture.get()), host::pixelBytes(*picture), value);
        std::string error;
        ASSERT_TRUE(host::savePicture(app.file(kPath), *picture, error)) << error;
    }

    App app;
};

}  // namespace

TEST_F(Picture, IsShownCentredAndUnscaled) {
    save(kCanvas.w - 5, 101, 0x40);
    app.open(kPath);
    const int top = kCanvas.y + (kCanvas.h - 101) / 2;
    EXPECT_EQ(App::pixel(1, top), kWhite);
    EXPECT_EQ(App::pixel(2, top), 0x404040);
    EXPECT_EQ(App::pixel(2, top - 1), kWhite);
    EXPECT_EQ(App::pixel(kCanvas.w - 4, top + 100), 0x404040);
    EXPECT_EQ(App::pixel(kCanvas.w - 3, top + 100), kWhite);
}

TEST_F(Picture, KeepsItsPathThoughItDoesNotLoadAndLosesItsFileWhenWhite) {
    app.open(kPath);
    EXPECT_EQ(App::pixel(700, 900), kWhite);
    app.tap(700, 900);
    app.tap(58, 50);
    EXPECT_TRUE(fs::exists(app.file(kPath)));
    save(40, 40, 0xFF);
    app.open(kPath);
    app.tap(58, 50);
    EXPECT_FALSE(fs::exists(app.file(kPath))) << "a white page has no file";
}

TEST_F(Picture, ComesBackAsItWasDrawnAndWithoutItsHistory) {
    app.create();
    app.down(300, 400);
    app.move(340, 480);
    app.up(420, 500);
    const host::Framebuffer drawn = App::screenshot();
    app.tap(58, 50);
    app.open("/mnt/ext1/My pictures/picture_1700000000.bmp");
    // The "back" button was pressed in between; the repaint shows it released again.
    EXPECT_TRUE(App::screenshot() == drawn);
    app.tap(1078, 50);
    EXPECT_TRUE(App::screenshot() == drawn) << "nothing to undo";
}
