#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <thread>

#include "browser/chromium.h"
#include "browser/display_host.h"

using namespace host;
using namespace std::chrono_literals;

namespace {

constexpr const char* kShown = "document.getElementById('notice').hidden && !!document.querySelector('canvas')";
constexpr Size kPanel{600, 800};
constexpr Size kWindow{500, 400};  // the panel is scaled to half, with 100 pixels free at either side

/// Where a panel's pixel is seen in the window.
Point seen(Point panel) { return {100 + panel.x / 2, panel.y / 2}; }

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

    void open(const std::string& address) {
        browser_->open(address, kWindow);
        ASSERT_TRUE(becomesTrue(kShown));
    }

    void stroke(const std::vector<Point>& points) {
        browser_->mouse("mousePressed", seen(points.front()));
        for (const Point& point : points) browser_->mouse("mouseMoved", seen(point));
        browser_->mouse("mouseReleased", seen(points.back()));
    }

    /// What the window shows of the panel's pixel, 0xRRGGBB.
    int pixel(Point panel) {
        const BitmapPtr picture = browser_->screenshot();
        const std::uint8_t* rgb = bitmapRow(*picture, seen(panel).y) + std::ptrdiff_t{seen(panel).x} * 3;
        return rgb[0] << 16 | rgb[1] << 8 | rgb[2];
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
    open(display.address);
    EXPECT_EQ(browser_->evaluate("document.title"), "Colour");
    EXPECT_EQ(browser_->evaluate("document.documentElement.scrollHeight + ' ' + innerHeight"), "400 400");
    // A busy machine takes a while to lay the page out.
    EXPECT_TRUE(comesTrue([this] { return pixel({150, 400}) == 0x00FFFF; }));
    EXPECT_EQ(pixel({150, 410}), 0xFFFFFF);
    EXPECT_NE(pixel({-100, 400}), 0xFFFFFF) << "beside the panel";

    stroke({{100, 100}, {200, 300}, {700, 300}});
    for (const char* expected : {"down 100,100", "move 200,300", "move 599,300", "up 599,300"})
        EXPECT_EQ(display.input(), expected);
    for (const auto& [key, expected] : std::vector<std::pair<std::string, std::string>>{
             {"é", "text é"}, {"я", "text я"}, {"😀", "text 😀"}, {"Backspace", "key 3"}}) {
        browser_->strike(key);
        EXPECT_EQ(display.input(), expected);
    }
}

TEST_F(BrowserPage, APictureIsMadeDrawnAndSavedAndFoundByTheNextRun) {
    constexpr Point kExplorersRule{300, 72};
    constexpr Point kFirstTile{110, 180};
    constexpr Point kBack{32, 28};
    static constexpr Point kColour{98, 26};
    const TemporaryFolder storage;
    const auto pictures = [&storage] {
        const std::filesystem::directory_iterator all(storage.path() / "My pictures");
        return std::distance(begin(all), end(all));
    };
    std::optional<Process> program;
    const auto run = [&](const std::string& options) {
        program.emplace("'" COLOUR_PROGRAM "' --display browser --panel 600x800@160,colour --storage '" +
                        storage.path().string() + "' " + options);
        return program->line();
    };
    const std::string address = run("");
    ASSERT_THAT(address, testing::StartsWith("http://127.0.0.1:"));
    const auto exploring = [&, this] { return (pixel(kExplorersRule) & 0xFF) < 0xC0; };
    open(address);
    ASSERT_TRUE(comesTrue(exploring));
    stroke({kFirstTile});  // "new picture"
    ASSERT_TRUE(comesTrue([this] { return pixel(kColour) == 0xFF0000; })) << "the toolbar";
    std::vector<Point> points;
    for (int step = 0; step <= 5; ++step) points.push_back({100 + step * 80, 300 + step * 40});
    stroke(points);
    const auto inked = [this] { return (pixel({300, 400}) & 0xFF8080) == 0xFF0000; };
    EXPECT_TRUE(comesTrue(inked)) << "red ink";
    EXPECT_EQ(pictures(), 0);
    stroke({kBack});
    EXPECT_TRUE(comesTrue(exploring));
    EXPECT_EQ(pictures(), 1);

    EXPECT_EQ(program->end(SIGTERM), 0);
    EXPECT_TRUE(becomesTrue("document.body.innerText.includes('Colour has ended')"));
    run("--port " + address.substr(address.rfind(':') + 1, 4));
    ASSERT_TRUE(becomesTrue(kShown)) << "it connects by itself";
    ASSERT_TRUE(comesTrue(exploring));
    stroke({{kFirstTile.x + 200, kFirstTile.y}});
    EXPECT_TRUE(comesTrue(inked)) << "the picture of before";
}

}  // namespace
