#include <gmock/gmock.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>

#include "browser/display_host.h"
#include "browser/vnc_peer.h"

using namespace host;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr Size kSmall{101, 47};  // odd, so that padding of rows cannot hide

std::string told(const std::optional<Input>& input) {
    if (!input) return "nothing";
    const std::string at = " " + std::to_string(input->at.x) + "," + std::to_string(input->at.y);
    switch (input->kind) {
        case Input::Kind::PointerDown:
            return "down" + at;
        case Input::Kind::PointerMove:
            return "move" + at;
        case Input::Kind::PointerUp:
            return "up" + at;
        case Input::Kind::Key:
            return "key " + std::to_string(static_cast<int>(input->key));
        case Input::Kind::Text:
            return "text " + input->text;
        case Input::Kind::Close:
            break;
    }
    return "close";
}

std::string passwordFile(const std::string& content) {
    const auto file = std::filesystem::temp_directory_path() / ("colour-password-" + std::to_string(getpid()));
    std::ofstream(file) << content;
    return file;
}

TEST(BrowserPicture, IsExactlyThePanels) {
    for (const PixelFormat format : {PixelFormat::Rgb24, PixelFormat::Grey8}) {
        DisplayHost display(kSmall, format);
        display.presentNoise({0, 0, kSmall.w, kSmall.h});
        EXPECT_TRUE(VncPeer(display.port).readPicture() == display.picture());
    }
    DisplayHost large({1404, 1872});  // far more than fits into any buffer on the way
    large.presentNoise({0, 0, 1404, 1872});
    EXPECT_TRUE(VncPeer(large.port).readPicture() == large.picture());
}

TEST(BrowserPicture, SendsOnlyWhatWasPresentedToEveryClient) {
    DisplayHost display(kSmall);
    VncPeer first(display.port);
    VncPeer second(display.port);
    first.readPicture();
    second.readPicture();
    for (VncPeer* peer : {&first, &second}) peer->request(true, {0, 0, kSmall.w, kSmall.h});
    display.presentNoise({7, 3, 24, 25});
    EXPECT_THAT(first.readUpdate(), ElementsAre(Rect{7, 3, 24, 25}));
    EXPECT_THAT(second.readUpdate(), ElementsAre(Rect{7, 3, 24, 25}));
    EXPECT_EQ(first.readPicture(), display.picture());
}

TEST(BrowserPointer, DrawsOnlyWhilePressedAndStaysOnThePanel) {
    DisplayHost display(kSmall);
    VncPeer peer(display.port);
    peer.pointer(0, {1, 1});
    peer.pointer(2, {2, 2});  // another button
    peer.pointer(1, {3, 4});
    peer.pointer(1, {500, 600});
    peer.pointer(0, {6, 7});
    EXPECT_EQ(told(display.input()), "down 3,4");
    EXPECT_EQ(told(display.input()), "move 100,46");
    EXPECT_EQ(told(display.input()), "up 6,7");
    EXPECT_EQ(told(display.input(50ms)), "nothing");
}

TEST(BrowserPointer, BelongsToOneClientUntilItLeaves) {
    DisplayHost display(kSmall);
    VncPeer first(display.port);
    VncPeer second(display.port);
    first.pointer(1, {10, 11});
    EXPECT_EQ(told(display.input()), "down 10,11");
    second.pointer(1, {20, 21});
    second.pointer(0, {20, 21});
    EXPECT_EQ(told(display.input(100ms)), "nothing");
    first.leave();
    EXPECT_EQ(told(display.input()), "up 10,11");
    second.pointer(1, {30, 31});
    EXPECT_EQ(told(display.input()), "down 30,31");
}

TEST(BrowserKeyboard, TypesWhileTextIsWanted) {
    DisplayHost display(kSmall);
    VncPeer peer(display.port);
    peer.clipboard("caf\xE9");
    peer.strike('x');
    peer.pointer(1, {0, 0});  // shows that the 'x' has been passed over
    EXPECT_EQ(told(display.input()), "down 0,0");
    display.run([](Display& shown, Framebuffer&) { shown.setTextInput(true, {}); });
    const std::vector<std::pair<std::uint32_t, std::string>> typed = {
        {'a', "text a"},    {0xE4, "text ä"},   {0x6C1, "text а"},      {0x7F3, "text ς"},
        {0x01E9, "text é"}, {0x20AC, "text €"}, {0x0101F600, "text 😀"}, {0xFFB7, "text 7"},
        {0xFF08, "key 3"},  {0xFF0D, "key 0"},  {0xFFFF, "key 4"}};
    for (const auto& [keysym, text] : typed) {
        peer.strike(keysym);
        EXPECT_EQ(told(display.input()), text);
    }
    peer.key(0xFFE1, true);
    peer.strike(0xFF0D);
    peer.key(0xFFE1, false);
    EXPECT_EQ(told(display.input()), "key 1");
    peer.strike(0x0100D800);  // half a character
    peer.key(0xFFE3, true);
    peer.strike('c');
    peer.strike('v');
    EXPECT_EQ(told(display.input()), "text café");
}

TEST(BrowserDisturbance, RubbishDropsItsSenderOnly) {
    DisplayHost display(kSmall);
    VncPeer good(display.port);
    std::mt19937 random(3);
    for (int round = 0; round < 100; ++round) {
        std::string rubbish(1 + random() % 300, '\0');
        for (char& byte : rubbish) byte = static_cast<char>(random());
        // Rubbish from the start, instead of a password's answer, and among a client's messages.
        if (round % 3 == 0) Peer(display.port).send(rubbish);
        if (round % 3 == 1) Peer(display.port).send("RFB 003.008\n" + rubbish);
        if (round % 3 == 2) Peer(display.port).send("RFB 003.008\n\1\1" + rubbish);
    }
    good.pointer(1, {1, 2});
    EXPECT_EQ(told(display.input()), "down 1,2");
    Peer unknown(display.port);
    unknown.send("RFB 003.008\n\1\1\x7F");
    EXPECT_LT(unknown.readAll().size(), 1000u);  // up to its end: the connection was closed
}

TEST(BrowserDisturbance, HalfAMessageHoldsNobodyUp) {
    DisplayHost display(kSmall);
    VncPeer good(display.port);
    Peer silent(display.port);
    Peer halfRequest(display.port);
    halfRequest.send("GE");
    Peer halfVersion(display.port);
    halfVersion.send("RFB");
    VncPeer halfMessage(display.port);
    halfMessage.send("\5");
    const auto start = std::chrono::steady_clock::now();
    good.pointer(1, {1, 2});
    EXPECT_EQ(told(display.input()), "down 1,2");
    EXPECT_EQ(good.readPicture(), display.picture());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);
}

TEST(BrowserDisturbance, AClientThatReadsNothingIsDroppedWhileOthersDraw) {
    const Rect all{0, 0, 1404, 1872};
    DisplayHost display(all.size());
    VncPeer hanging(display.port);
    VncPeer good(display.port);
    display.presentNoise(all);
    for (int i = 0; i < 20; ++i) hanging.request(false, all);
    for (int i = 0; i < 50; ++i) {
        const auto start = std::chrono::steady_clock::now();
        good.pointer(1, {i, i});
        EXPECT_NE(told(display.input()), "nothing");
        good.request(true, all);
        display.presentNoise({i, i, 24, 24});
        good.readUpdate();
        EXPECT_TRUE(i == 0 || std::chrono::steady_clock::now() - start < 500ms);  // the first brings the whole panel
    }
    std::this_thread::sleep_for(11s);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_LT(hanging.readAll().size(), std::size_t{1404} * 1872 * 4);  // ends in the midst of the first picture
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);            // and does not stay open
}

TEST(BrowserDisturbance, IdleCostsNoProcessorTime) {
    DisplayHost display(kSmall);
    VncPeer peer(display.port);
    peer.readPicture();
    peer.request(true, {0, 0, kSmall.w, kSmall.h});
    std::this_thread::sleep_for(100ms);
    const std::clock_t before = std::clock();
    std::this_thread::sleep_for(1s);
    EXPECT_LT(static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC, 0.02);
}

TEST(BrowserWait, EndsWhenItsTimeHasPassed) {
    DisplayHost display(kSmall);
    display.run([](Display& shown, Framebuffer&) {
        const auto start = std::chrono::steady_clock::now();
        while (shown.wait(0ms)) continue;  // a wake may be left over
        EXPECT_FALSE(shown.wait(80ms));
        const auto passed = std::chrono::steady_clock::now() - start;
        EXPECT_GE(passed, 79ms);
        EXPECT_LT(passed, 500ms);
    });
}

TEST(BrowserAccess, AnAddressNeedsAPassword) {
    EXPECT_THAT(DisplayHost(kSmall).address, testing::StartsWith("http://127.0.0.1:"));
    std::string error;
    BrowserSettings settings;
    settings.page = COLOUR_SOURCE_DIR "/theme/browser";
    settings.listen = "0.0.0.0";
    EXPECT_EQ(openBrowser(settings, kSmall, PixelFormat::Grey8, error), nullptr);
    EXPECT_THAT(error, HasSubstr("--password-file"));
    for (const std::string& file : {std::string("/nowhere/password"), passwordFile("\n")}) {
        settings.passwordFile = file;
        EXPECT_EQ(openBrowser(settings, kSmall, PixelFormat::Grey8, error), nullptr);
        EXPECT_THAT(error, HasSubstr(file));
    }
    settings.passwordFile = passwordFile("secret\n");
    DisplayHost display(kSmall, PixelFormat::Rgb24, settings);
    EXPECT_TRUE(VncPeer(display.port, "secret").admitted());
    EXPECT_FALSE(VncPeer(display.port, "guess").admitted());
    std::filesystem::remove(settings.passwordFile);
}

TEST(BrowserAccess, SaysWhyItCannotOpen) {
    DisplayHost taken(kSmall);
    std::string error;
    BrowserSettings settings;
    settings.page = "/nowhere";
    EXPECT_EQ(openBrowser(settings, kSmall, PixelFormat::Grey8, error), nullptr);
    EXPECT_THAT(error, HasSubstr("/nowhere/index.html"));
    settings.page = COLOUR_SOURCE_DIR "/theme/browser";
    settings.port = taken.port;
    EXPECT_EQ(openBrowser(settings, kSmall, PixelFormat::Grey8, error), nullptr);
    EXPECT_THAT(error, HasSubstr(std::to_string(taken.port)));
}

}  // namespace
