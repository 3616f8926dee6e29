#include <gmock/gmock.h>

#include <thread>

#include "browser/chromium.h"
#include "browser/display_host.h"
#include "platform/host/files/picture_file.h"

using namespace host;
using namespace std::chrono_literals;

namespace {

constexpr const char* kShown = "document.getElementById('notice').hidden && !document.getElementById('panel').hidden";
constexpr Size kPanel{600, 800};
const Chromium::Window kDesktop{{500, 400}};         // the panel is scaled to half, with 100 pixels free at either side
const Chromium::Window kPhone{{300, 520}, 3, true};  // again to half, with 60 pixels free above and below

/// Where a panel's pixel is seen in these windows, in CSS pixels.
Point onDesktop(Point panel) { return {100 + panel.x / 2, panel.y / 2}; }
Point onPhone(Point panel) { return {panel.x / 2, 60 + panel.y / 2}; }

struct BrowserPage : testing::Test {
    void SetUp() override {
        if (!std::filesystem::exists(Chromium::kProgram))
            GTEST_SKIP() << "chromium is not installed: the page is not tested in a browser";
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

    static void setTyping(DisplayHost& display, bool on) {
        display.run([on](Display& shown) { shown.setTextInput(on, {10, 400, 300, 100}); });
    }

    std::optional<Chromium> browser_;
};

TEST_F(BrowserPage, ShowsThePanelAndSendsMouseAndPen) {
    DisplayHost display(kPanel);
    display.run([&display](Display& shown) {
        for (int x = 100; x < 200; ++x) display.picture.at(x, 400)[0] = display.picture.at(x, 401)[0] = 0;
        shown.present(display.picture, {100, 400, 100, 2});
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

TEST_F(BrowserPage, SendsFingersOfAPhoneAndShowsItsKeyboardOnlyWhenAsked) {
    DisplayHost display(kPanel);
    open(display.address, kPhone);
    browser_->touch("touchStart", onPhone({100, 100}));
    browser_->touch("touchMove", onPhone({300, 200}));
    browser_->mouse("mousePressed", onPhone({500, 500}), "pen");
    browser_->mouse("mouseReleased", onPhone({500, 500}), "pen");
    expectInputs(display, {"down 100,100", "move 300,200", "up 300,200", "down 500,500", "up 500,500"});

    setTyping(display, true);
    EXPECT_TRUE(becomesTrue("document.activeElement.inputMode == 'none'"));
    click("#keyboard");
    EXPECT_TRUE(becomesTrue("document.activeElement.inputMode == 'text'"));
}

TEST_F(BrowserPage, KeepsThinLinesVisibleAtEveryScale) {
    constexpr Size kLarge{1404, 1872};
    constexpr int kStep = 26;  // the lines fall on device pixels in many ways
    DisplayHost display(kLarge);
    for (int y = kStep; y < kLarge.h; y += kStep) std::fill_n(display.picture.at(0, y), kLarge.w * 3, std::uint8_t{0});
    display.run([&](Display& shown) { shown.present(display.picture, {0, 0, kLarge.w, kLarge.h}); });
    for (const Chromium::Window& window :
         {Chromium::Window{{1366, 768}}, {{1366, 768}, 1.5}, {{390, 844}, 3, true}, {{1024, 1366}, 2, true}}) {
        open(display.address, window);
        const double scale = std::min(window.size.w * window.ratio / kLarge.w, window.size.h * window.ratio / kLarge.h);
        const double top = (window.size.h * window.ratio - kLarge.h * scale) / 2;
        BitmapPtr picture;
        const auto darkest = [&](double from, double to) {
            int value = 0xFF;
            for (int y = static_cast<int>(top + from * scale); y < top + to * scale; ++y)
                value = std::min<int>(value, bitmapRow(*picture, y)[picture->width / 2 * 3]);
            return value;
        };
        const auto linesAreSeen = [&] {
            picture = browser_->screenshot();
            int palest = 0;
            for (int y = kStep; y < kLarge.h; y += kStep) palest = std::max(palest, darkest(y - 1, y + 2));
            return palest < 0xA0;
        };
        EXPECT_TRUE(comesTrue(linesAreSeen)) << window.size.w << " at " << window.ratio;
        EXPECT_EQ(darkest(kStep + 5, 2 * kStep - 5), 0xFF) << "nothing is blurred";
    }
}

TEST_F(BrowserPage, TakesTextHoweverItComes) {
    DisplayHost display(kPanel);
    open(display.address);
    browser_->strike("x", "x");  // nobody asks for text
    setTyping(display, true);
    ASSERT_TRUE(becomesTrue("document.activeElement.id == 'field'"));
    for (const char* letter : {"w", "ö", " ", "ж"}) browser_->strike(letter, letter);
    expectInputs(display, {"text w", "text ö", "text  ", "text ж"});
    for (const char* key : {"Backspace", "Enter", "ArrowLeft", "Escape"}) browser_->strike(key);
    expectInputs(display, {"key 3", "key 0", "key 5", "key 2"});

    const auto compose = [this](const std::string& text) {
        browser_->command("Input.imeSetComposition", "\"text\":\"" + text + R"(","selectionStart":1,"selectionEnd":1)");
    };
    for (const char* text : {"か", "かん", "漢"}) compose(text);
    browser_->insert("漢");  // chosen
    expectInputs(display, {"text か", "text ん", "key 3", "key 3", "text 漢"});
    browser_->insert("👩‍👧");
    browser_->evaluate("document.execCommand('delete')");  // Backspace without a key
    expectInputs(display, {"text 👩‍👧", "key 3"});
    compose("字");
    stroke({{100, 100}});
    browser_->insert("z");
    expectInputs(display, {"text 字", "down 100,100", "move 100,100", "up 100,100", "text z"});

    browser_->evaluate(
        "document.getElementById('field').dispatchEvent(new ClipboardEvent('paste', {bubbles: true, "
        "clipboardData: (data => (data.setData('text/plain', 'a\\r\\nb' + '漢'.repeat(2000)), data))"
        "(new DataTransfer())}))");
    const std::string pasted = display.input();
    EXPECT_EQ(pasted.substr(0, 11), "text a\nb漢");
    EXPECT_EQ(pasted.size(), std::string("text ").size() + 3 + 1364 * 3) << "cut between characters, 1 byte early";
    setTyping(display, false);
    ASSERT_TRUE(becomesTrue("document.activeElement == document.body"));
    browser_->strike("x", "x");
    stroke({{100, 100}});
    EXPECT_EQ(display.input(), "down 100,100");
}

TEST_F(BrowserPage, SavesThePanelAsItIs) {
    DisplayHost display({101, 47});
    display.presentNoise({0, 0, 101, 47});
    const TemporaryFolder folder;
    open(display.address);
    browser_->command("Browser.setDownloadBehavior",
                      R"("behavior":"allow","downloadPath":")" + folder.path().string() + '"');
    click("#download");
    std::string saved;
    ASSERT_TRUE(comesTrue([&] {
        for (const auto& file : std::filesystem::directory_iterator(folder.path())) saved = file.path();
        return saved.ends_with(".png");
    }));
    EXPECT_THAT(saved, testing::ContainsRegex("/colour-....-..-..-......\\.png$"));
    std::string error;
    const BitmapPtr picture = loadPicture(saved, error);
    ASSERT_NE(picture, nullptr) << error;
    for (int y = 0; y < 47; ++y)
        EXPECT_TRUE(std::equal(bitmapRow(*picture, y), bitmapRow(*picture, y) + 303, display.picture.at(0, y))) << y;
}

TEST_F(BrowserPage, ShowsWetInkFromTheLastPieceToThePointerUntilItIsDrawn) {
    DisplayHost display(kPanel);
    open(display.address);
    const auto wet = [&](const std::vector<Point>& path) {
        const WetInk ink{path, 0x0000FF, 20};
        display.run([&](Display& shown) { shown.wetInk(path.empty() ? nullptr : &ink); });
    };
    const auto shows = [this](Point at, int colour) { return comesTrue([&] { return pixel(at) == colour; }); };
    display.run([&](Display& shown) { shown.present(display.picture, {0, 0, kPanel.w, kPanel.h}); });
    wet({{300, 300}});  // a press of somebody else's
    browser_->mouse("mousePressed", onDesktop({100, 100}));
    for (const int x : {200, 300, 400}) browser_->mouse("mouseMoved", onDesktop({x, 100}));
    EXPECT_TRUE(shows({150, 100}, 0xFFFFFF)) << "nothing has been drawn yet";
    wet({{200, 100}});
    EXPECT_TRUE(shows({390, 100}, 0x0000FF));
    EXPECT_EQ(pixel({150, 100}), 0xFFFFFF);
    browser_->mouse("mouseMoved", onDesktop({400, 300}));
    EXPECT_TRUE(shows({400, 290}, 0x0000FF)) << "without a word from the program";
    wet({{400, 100}});
    EXPECT_TRUE(shows({300, 100}, 0xFFFFFF));
    EXPECT_EQ(pixel({400, 200}), 0x0000FF);
    browser_->mouse("mouseReleased", onDesktop({400, 300}));
    wet({});
    EXPECT_TRUE(shows({400, 200}, 0xFFFFFF));
}

TEST_F(BrowserPage, TellsThatAnotherIsDrawing) {
    DisplayHost display(kPanel);
    open(display.address);
    browser_->mouse("mousePressed", onDesktop({100, 100}));
    open(display.address);
    stroke({{300, 300}});
    EXPECT_TRUE(says("Somebody else is drawing"));
}

TEST_F(BrowserPage, SpeaksThePersonsLanguage) {
    DisplayHost display(kPanel);
    const std::string door = display.address.substr(0, display.address.find('?'));
    browser_->open(door, kDesktop);
    using Words = std::pair<std::string, std::string>;
    for (const auto& [languages, words] :
         {Words("pt-BR,de-AT", "Adresse, die"), Words("fr", "l’adresse"), Words("es-MX", "la dirección"),
          Words("ru", "адрес"), Words("ar", "العنوان"), Words("en-GB", "the address"), Words("ja", "the address")}) {
        browser_->command("Emulation.setUserAgentOverride",
                          R"("userAgent":"Test","acceptLanguage":")" + languages + '"');
        browser_->command("Page.reload");
        EXPECT_TRUE(says(words)) << languages;
        EXPECT_TRUE(becomesTrue(languages == "ar" ? "document.dir == 'rtl'" : "document.dir == 'ltr'"));
    }
}

TEST_F(BrowserPage, TheDoorOpensByPasswordAlsoWithoutJavaScript) {
    const TemporaryFolder folder;
    BrowserSettings settings = browserSettings();
    settings.passwordFile = folder.write("password", "pass word & ä\n");
    DisplayHost display(kPanel, PixelFormat::Rgb24, settings);
    browser_->open("about:blank", kDesktop);
    browser_->command("Emulation.setScriptExecutionDisabled", R"("value":true)");
    browser_->command("Page.navigate", "\"url\":\"" + display.address + '"');
    const auto tryPassword = [this](const std::string& password) {
        ASSERT_TRUE(becomesTrue("!!document.querySelector('input')"));
        browser_->evaluate("document.querySelector('input').focus()");
        browser_->insert(password);
        click("button");
    };
    tryPassword("guess");
    EXPECT_TRUE(says("Wrong password"));
    browser_->command("Emulation.setScriptExecutionDisabled", R"("value":false)");
    tryPassword("pass word & ä");
    EXPECT_TRUE(becomesTrue(kShown));
}

TEST_F(BrowserPage, APictureIsMadeDrawnAndSavedAndFoundByTheNextRun) {
    constexpr Point kExplorersRule{300, 72};
    constexpr Point kFirstTile{110, 180};
    constexpr Point kBack{32, 28};
    static constexpr Point kColour{98, 26};
    const TemporaryFolder storage;
    std::optional<Process> program;
    const auto run = [&](const std::string& options) {
        program.emplace("env XDG_STATE_HOME='" + storage.path().string() +
                        "' '" COLOUR_PROGRAM "' --display browser --panel 600x800@160,colour --storage '" +
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
    stroke({kBack});
    EXPECT_TRUE(comesTrue(exploring));

    EXPECT_EQ(program->end(SIGTERM), 0);
    EXPECT_TRUE(says("Colour has ended"));
    run("--port " + address.substr(address.rfind(':') + 1, 4));
    ASSERT_TRUE(becomesTrue(kShown)) << "it connects by itself";
    ASSERT_TRUE(comesTrue(exploring));
    stroke({{kFirstTile.x + 200, kFirstTile.y}});
    EXPECT_TRUE(comesTrue(inked)) << "the picture of before";
}

}  // namespace
