#include <gtest/gtest.h>

#include <cmath>

#include "platform/host/window/window_view.h"

namespace host {
namespace {

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

}  // namespace
}  // namespace host
