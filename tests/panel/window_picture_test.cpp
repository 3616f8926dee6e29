#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "platform/host/panel/area_scaler.h"
#include "platform/host/panel/window_view.h"
#include "support/area_mean.h"

namespace host {
namespace {

using Pixels = std::vector<std::uint32_t>;

Pixels scaled(const Framebuffer& picture, Size to, Rect area) {
    Pixels pixels(static_cast<std::size_t>(area.w) * static_cast<std::size_t>(area.h));
    AreaScaler(picture.size(), to)
        .scale(picture, area, {reinterpret_cast<std::uint8_t*>(pixels.data()), static_cast<std::size_t>(area.w) * 4});
    return pixels;
}

Pixels scaled(const Framebuffer& picture, Size to) { return scaled(picture, to, {0, 0, to.w, to.h}); }

Framebuffer noise(Size size, PixelFormat format) {
    Framebuffer picture(size, format);
    std::mt19937 random(3);
    for (int y = 0; y < size.h; ++y) {
        for (std::size_t i = 0; i < picture.stride(); ++i) picture.at(0, y)[i] = static_cast<std::uint8_t>(random());
    }
    return picture;
}

TEST(WindowView, ThePictureIsCentredAndKeepsItsShape) {
    EXPECT_EQ(WindowView({1404, 1872}, {1404, 1872}).picture(), (Rect{0, 0, 1404, 1872}));
    EXPECT_EQ(WindowView({600, 800}, {1000, 400}).picture(), (Rect{350, 0, 300, 400}));
    EXPECT_EQ(WindowView({600, 800}, {300, 1000}).picture(), (Rect{0, 300, 300, 400}));
    EXPECT_EQ(WindowView({600, 800}, {1200, 1600}).picture(), (Rect{0, 0, 1200, 1600}));
    EXPECT_EQ(WindowView::fit({600, 800}, {3840, 2160}), (Size{600, 800})) << "never larger than the panel by itself";
    EXPECT_EQ(WindowView::fit({1404, 1872}, {1280, 936}), (Size{702, 936}));
}

// A click on the window pixel that shows the middle of a panel pixel means that pixel, as far as the window tells
// pixels apart: exactly where the picture is not scaled down, within the window pixel's own cell where it is.
TEST(WindowView, APointMeansThePanelPixelThatIsShownThere) {
    const Size panel{140, 187};
    for (const Size window : {Size{140, 187}, {71, 400}, {100, 133}, {139, 300}, {333, 270}, {280, 374}, {141, 188}}) {
        const WindowView view(panel, window);
        const Rect picture = view.picture();
        const double scale = static_cast<double>(picture.w) / panel.w;
        for (int x = 0; x < panel.w; ++x) {
            const int column = picture.x + static_cast<int>((x + 0.5) * picture.w / panel.w);
            const Point back = view.toPanel(column + 0.5, picture.y + 0.5);
            if (scale >= 1) {
                EXPECT_EQ(back.x, x);
            }
            EXPECT_LE(std::abs(back.x - x), 0.5 / scale + 0.5) << "window " << window.w << " pixel " << x;
            EXPECT_TRUE(view.toWindow({x, 0, 1, 1}).contains({column, picture.y}));
        }
        EXPECT_EQ(view.toPanel(-500, picture.y - 1), (Point{0, 0}));
        EXPECT_EQ(view.toPanel(1e9, 1e9), (Point{139, 186}));
    }
}

TEST(AreaScaler, APixelIsTheMeanOfTheAreaThatItCovers) {
    const Framebuffer picture = noise({31, 23}, PixelFormat::Rgb24);
    for (const Size to : {Size{31, 23}, {17, 11}, {30, 22}, {8, 23}, {1, 1}, {62, 46}, {40, 50}}) {
        const Pixels pixels = scaled(picture, to);
        for (int i = 0; i < to.w * to.h; ++i) {
            const double green = pixels[static_cast<std::size_t>(i)] >> 8 & 0xFF;
            const auto stored = [&](int x, int y) { return picture.at(x, y)[1]; };
            ASSERT_NEAR(green, areaMean({31, 23}, to, {i % to.w, i / to.w}, stored), 2.5) << to.w << ": " << i;
        }
    }
}

TEST(AreaScaler, WhiteStaysWhiteAndAPartIsCutFromTheWhole) {
    for (const PixelFormat format : {PixelFormat::Grey8, PixelFormat::Rgb24}) {
        const Framebuffer white({97, 61}, format);
        const Framebuffer picture = noise({97, 61}, format);
        for (const Size to : {Size{97, 61}, {70, 44}, {50, 31}, {13, 8}, {150, 100}}) {
            EXPECT_THAT(scaled(white, to), testing::Each(0xFFFFFFU));
            const Pixels whole = scaled(picture, to);
            const Rect area{to.w / 3, to.h / 4, to.w / 2, to.h / 2};
            const Pixels part = scaled(picture, to, area);
            for (int y = 0; y < area.h; ++y) {
                const auto row = whole.begin() + (area.y + y) * to.w + area.x;
                ASSERT_TRUE(std::equal(row, row + area.w, part.begin() + y * area.w)) << y;
            }
        }
    }
}

}  // namespace
}  // namespace host
