#include <gtest/gtest.h>

#include <cmath>

#include "platform/host/files/picture_file.h"
#include "support/app.h"

namespace {

constexpr const char* kPath = "/mnt/ext1/My pictures/test.bmp";
constexpr host::Rect kCanvas{0, 108, 1404, 1764};

struct Picture : testing::Test {
    void open(host::Size size, int value) {
        const host::BitmapPtr picture = host::makeBitmap(size.w, size.h, 24);
        std::fill_n(bitmap_pixels(picture.get()), host::pixelBytes(*picture), value);
        std::string error;
        ASSERT_TRUE(host::savePicture(app.file(kPath), *picture, error)) << error;
        app.open(kPath);
    }
    void leave() { app.tap(58, 50); }

    App app;
};

}  // namespace

TEST_F(Picture, IsShownCentredAndUnscaled) {
    open({kCanvas.w - 5, 101}, 0x40);
    const int top = kCanvas.y + (kCanvas.h - 101) / 2, bottom = top + 100;
    for (const auto& [x, y, colour] : {std::tuple(1, top, kWhite),
                                       {2, top, 0x404040},
                                       {2, top - 1, kWhite},
                                       {kCanvas.w - 4, bottom, 0x404040},
                                       {kCanvas.w - 3, bottom, kWhite}})
        EXPECT_EQ(App::pixel(x, y), colour) << x << ' ' << y;
}

TEST_F(Picture, KeepsItsPathThoughItDoesNotLoadAndLosesItsFileWhenWhite) {
    app.open(kPath);
    EXPECT_EQ(App::pixel(700, 900), kWhite);
    app.tap(700, 900);
    leave();
    EXPECT_TRUE(exists(app.file(kPath)));
    app.open(kPath);
    app.tap(568, 50);  // the eraser
    app.tap(700, 900);
    leave();
    EXPECT_FALSE(exists(app.file(kPath))) << "a white page has no file";
}

TEST_F(Picture, ComesBackAsItWasDrawnAndWithoutItsHistory) {
    app.create();
    app.drag({{300, 400}, {340, 480}, {420, 500}});
    const host::Framebuffer drawn = App::screenshot();
    leave();
    app.open("/mnt/ext1/My pictures/picture_1700000000.bmp");
    // The "back" button was pressed in between; the repaint shows it released again.
    EXPECT_TRUE(App::screenshot() == drawn);
    app.tap(1078, 50);
    EXPECT_TRUE(App::screenshot() == drawn) << "nothing to undo";
}

TEST_F(Picture, ShowsAllItsInkBeforeThePenIsLifted) {
    app.create();
    app.down(300, 400);
    for (int i = 1; i < 40; ++i) app.move(300 + 5 * i, 400 + static_cast<int>(std::lround(60 * std::sin(i / 5.0))));
    app.up(500, 459);
    const host::Framebuffer& shown = App::kit().panel.shown();
    for (const auto [x, y] : host::everyPixel({1404, 600}))
        ASSERT_TRUE(y < kCanvas.y || host::colourAt(shown, {x, y}) == App::pixel(x, y)) << x << ' ' << y;
}
