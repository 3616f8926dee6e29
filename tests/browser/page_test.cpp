#include <SDL.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <optional>

#include "browser/chromium.h"
#include "browser/display_host.h"

using namespace host;
using namespace std::chrono_literals;

namespace {

constexpr Size kPanel{600, 800};
constexpr Size kWindow{500, 400};  // the panel is scaled to half, with 100 pixels free at either side
constexpr const char* kShown = "document.getElementById('notice').hidden && !!document.querySelector('canvas')";

/// The pixel of a screenshot, 0xRRGGBB.
int pixel(const Chromium::Picture& picture, Point at) {
    const auto* bytes = static_cast<const Uint8*>(picture->pixels) + at.y * picture->pitch + at.x * 3;
    return bytes[0] << 16 | bytes[1] << 8 | bytes[2];
}

/// Where a panel's pixel is seen in the window.
Point seen(Point panel) { return {100 + panel.x / 2, panel.y / 2}; }

class BrowserPage : public testing::Test {
protected:
    void SetUp() override {
        if (!Chromium::installed()) GTEST_SKIP() << "chromium is not installed: the page is not tested in a browser";
        browser_.emplace();
    }

    void stroke(const std::vector<Point>& points) {
        browser_->mouse("mousePressed", seen(points.front()));
        for (const Point& point : points) browser_->mouse("mouseMoved", seen(point));
        browser_->mouse("mouseReleased", seen(points.back()));
    }

    std::optional<Chromium> browser_;
};

TEST_F(BrowserPage, ShowsThePanelAndSendsPointerAndKeys) {
    DisplayHost display(kPanel);
    display.run([](Display& shown, Framebuffer& picture) {
        for (int x = 100; x < 200; ++x) picture.at(x, 400)[0] = picture.at(x, 401)[0] = 0;
        shown.present(picture, {100, 400, 100, 2});
        shown.setTextInput(true, {});
    });
    browser_->open(display.address, kWindow);
    ASSERT_TRUE(browser_->becomesTrue(kShown));
    EXPECT_EQ(browser_->evaluate("document.title"), "Colour");
    EXPECT_EQ(browser_->evaluate("document.documentElement.scrollHeight + ' ' + innerHeight"), "400 400");
    const Chromium::Picture picture = browser_->screenshot();
    EXPECT_EQ(pixel(picture, seen({150, 400})), 0x00FFFF);
    EXPECT_EQ(pixel(picture, seen({150, 410})), 0xFFFFFF);
    EXPECT_NE(pixel(picture, {50, 200}), 0xFFFFFF);  // beside the panel

    stroke({{100, 100}, {200, 300}, {700, 300}});
    std::vector<Point> points;
    std::optional<Input> input;
    while ((input = display.input()) && input->kind != Input::Kind::PointerUp) points.push_back(input->at);
    EXPECT_THAT(points, testing::ElementsAre(Point{100, 100}, Point{200, 300}, Point{599, 300}));
    ASSERT_TRUE(input);
    EXPECT_EQ(input->at, (Point{599, 300}));

    for (const std::string text : {"é", "я", "😀"}) {
        browser_->strike(text);
        input = display.input();
        ASSERT_TRUE(input);
        EXPECT_EQ(input->text, text);
    }
    browser_->strike("Backspace");
    input = display.input();
    ASSERT_TRUE(input);
    EXPECT_EQ(input->key, Key::Backspace);
}

TEST_F(BrowserPage, SaysThatTheProgramHasEndedAndComesBack) {
    std::optional<DisplayHost> display(std::in_place, kPanel);
    BrowserSettings again;
    again.port = display->port;
    browser_->open(display->address, kWindow);
    ASSERT_TRUE(browser_->becomesTrue(kShown));
    display.reset();
    EXPECT_TRUE(browser_->becomesTrue("document.body.innerText.includes('Colour has ended')"));
    display.emplace(kPanel, PixelFormat::Rgb24, again);
    EXPECT_TRUE(browser_->becomesTrue(kShown));
}

}  // namespace
