#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <thread>

#include "browser/chromium.h"
#include "browser/display_host.h"
#include "platform/host/files/picture_file.h"

using namespace host;
using namespace std::chrono_literals;

namespace {

constexpr const char* kShown = "document.getElementById('notice').hidden && !document.getElementById('panel').hidden";
constexpr Size kPanel{600, 800};
const Chromium::Window kDesktop{{500, 400}};  // the panel is scaled to half, with 100 pixels free at either side
const Chromium::Window kPhone{{300, 500}, 3, true};  // again to half, with 50 pixels free above and below

/// Where a panel's pixel is seen in these windows, in CSS pixels.
Point onDesktop(Point panel) { return {100 + panel.x / 2, panel.y / 2}; }
Point onPhone(Point panel) { return {panel.x / 2, 50 + panel.y / 2}; }

class BrowserPage : public testing::Test {
protected:
    void SetUp() override {
        if (!Chromium::installed()) GTEST_SKIP() << "chromium is not installed: the page is not tested in a browser";
        browser_.emplace();
    }

    /// Waits a minute for it, since a loaded machine is slow.
    static bool comesTrue(const std::function<bool()>& condition) {
        for (int i = 0; i < 600 && !condition(); ++i) std::this_thread::sleep_for(100ms);
        return condition();
    }

    /// Waits for a JavaScript expression.
    bool becomesTrue(const std::string& expression) {
        return comesTrue([&] { return browser_->evaluate(expression) == "true"; });
    }

    bool says(const std::string& words) { return becomesTrue("document.body.innerText.includes('" + words + "')"); }

    void open(const std::string& address, const Chromium::Window& window = kDesktop) {
        browser_->open(address, window);
        ASSERT_TRUE(becomesTrue(kShown));
    }

    void stroke(const std::vector<Point>& points, const std::string& pointer = "mouse") {
        browser_->mouse("mousePressed", onDesktop(points.front()), pointer);
        for (const Point& point : points) browser_->mouse("mouseMoved", onDesktop(point), pointer);
        browser_->mouse("mouseReleased", onDesktop(points.back()), pointer);
    }

    void click(const std::string& selector) {
        ASSERT_EQ(browser_->evaluate("document.querySelector('" + selector + "').checkVisibility()"), "true");
        browser_->evaluate("document.querySelector('" + selector + "').click()");
    }

    /// What the window shows of the panel's pixel, 0xRRGGBB.
    int pixel(Point panel) {
        const BitmapPtr picture = browser_->screenshot();
        const std::uint8_t* rgb = bitmapRow(*picture, onDesktop(panel).y) + std::ptrdiff_t{onDesktop(panel).x} * 3;
        return rgb[0] << 16 | rgb[1] << 8 | rgb[2];
    }

    static void expectInputs(DisplayHost& display, const std::vector<std::string>& expected) {
        for (const std::string& input : expected) EXPECT_EQ(display.input(), input);
    }

    std::optional<Chromium> browser_;
};

TEST_F(BrowserPage, ShowsThePanelAndSendsMouseAndPen) {
    DisplayHost display(kPanel);
    display.run([](Display& shown, Framebuffer& picture) {
        for (int x = 100; x < 200; ++x) picture.at(x, 400)[0] = picture.at(x, 401)[0] = 0;
        shown.present(picture, {100, 400, 100, 2});
    });
    open(display.address);
    EXPECT_EQ(browser_->evaluate("document.documentElement.scrollHeight + ' ' + innerHeight"), "400 400");
    // A busy machine takes a while to lay the page out.
    EXPECT_TRUE(comesTrue([this] { return pixel({150, 400}) == 0x00FFFF; }));
    EXPECT_EQ(pixel({150, 410}), 0xFFFFFF);
    EXPECT_NE(pixel({-100, 400}), 0xFFFFFF) << "beside the panel";

    for (const char* pointer : {"mouse", "pen"}) {
        stroke({{100, 100}, {200, 300}, {700, 300}}, pointer);
        expectInputs(display, {"down 100,100", "move 100,100", "move 200,300", "move 599,300", "up 599,300"});
    }
}
