#include <gmock/gmock.h>

#include <ctime>
#include <random>

#include "browser/display_host.h"
#include "browser/vnc_peer.h"
#include "support/temporary_folder.h"

using namespace host;
using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr Size kSmall{101, 47};  // odd, so that padding of rows cannot hide
constexpr Rect kLarge{0, 0, 1404, 1872};

TEST(BrowserPicture, IsExactlyThePanels) {
    const std::pair<Size, PixelFormat> panels[] = {
        {kSmall, PixelFormat::Rgb24},
        {kSmall, PixelFormat::Grey8},
        {kLarge.size(), PixelFormat::Rgb24}};  // more than any buffer on the way holds
    for (const auto& [size, format] : panels) {
        DisplayHost display(size, format);
        display.presentNoise({0, 0, size.w, size.h});
        VncPeer peers[] = {VncPeer(display.port), VncPeer(display.port)};
        for (VncPeer& peer : peers) {
            EXPECT_TRUE(peer.readPicture() == display.picture());
            peer.request(true, {0, 0, size.w, size.h});
        }
        display.presentNoise({7, 3, 24, 25});
        for (VncPeer& peer : peers) EXPECT_THAT(peer.readUpdate(), ElementsAre(Rect{7, 3, 24, 25}));
        EXPECT_TRUE(peers[0].readPicture() == display.picture());
    }
}

TEST(BrowserPointer, BelongsToOneClientUntilItLeavesAndStaysOnThePanel) {
    DisplayHost display(kSmall);
    VncPeer first(display.port);
    VncPeer second(display.port);
    first.pointer(0, {1, 1});
    first.pointer(2, {2, 2});  // another button
    first.pointer(1, {3, 4});
    first.pointer(1, {500, 600});
    for (const char* expected : {"down 3,4", "move 100,46"}) EXPECT_EQ(display.input(), expected);
    second.pointer(1, {20, 21});
    second.pointer(0, {20, 21});
    EXPECT_EQ(display.input(100ms), "nothing");
    first.pointer(1, {10, 11});
    first.leave();
    for (const char* expected : {"move 10,11", "up 10,11"}) EXPECT_EQ(display.input(), expected);
    second.pointer(1, {30, 31});
    EXPECT_EQ(display.input(), "down 30,31");
}

TEST(BrowserKeyboard, TypesWhileTextIsWanted) {
    DisplayHost display(kSmall);
    VncPeer peer(display.port);
    peer.clipboard("caf\xE9");
    peer.strike('x');
    peer.pointer(1, {0, 0});  // shows that the 'x' has been passed over
    EXPECT_EQ(display.input(), "down 0,0");
    display.run([](Display& shown, Framebuffer&) { shown.setTextInput(true, {}); });
    const std::vector<std::pair<std::uint32_t, std::string>> typed = {
        {'a', "text a"},    {0xE4, "text ä"},   {0x6C1, "text а"},      {0x7F3, "text ς"},
        {0x01E9, "text é"}, {0x20AC, "text €"}, {0x0101F600, "text 😀"}, {0xFFB7, "text 7"},
        {0xFF08, "key 3"},  {0xFF0D, "key 0"},  {0xFFFF, "key 4"}};
    for (const auto& [keysym, text] : typed) {
        peer.strike(keysym);
        EXPECT_EQ(display.input(), text);
    }
    peer.key(0xFFE1, true);
    peer.strike(0xFF0D);
    peer.key(0xFFE1, false);
    EXPECT_EQ(display.input(), "key 1");
    peer.strike(0x0100D800);  // half a character
    peer.key(0xFFE3, true);
    peer.strike('c');
    peer.strike('v');
    EXPECT_EQ(display.input(), "text café");
}

TEST(BrowserDisturbance, RubbishAndHalfMessagesHoldNobodyUp) {
    DisplayHost display(kSmall);
    VncPeer good(display.port);
    Peer silent(display.port);
    Peer halfRequest(display.port);
    halfRequest.send("GE");
    Peer halfVersion(display.port);
    halfVersion.send("RFB");
    VncPeer halfMessage(display.port);
    halfMessage.send("\5");
    std::mt19937 random(3);
    // Rubbish from the start, instead of a password's answer, and among a client's messages.
    const std::string beginnings[] = {"", "RFB 003.008\n", "RFB 003.008\n\1\1"};
    for (std::size_t round = 0; round < 100; ++round) {
        std::string rubbish(1 + random() % 300, '\0');
        for (char& byte : rubbish) byte = static_cast<char>(random());
        Peer(display.port).send(beginnings[round % 3] + rubbish);
    }
    Peer unknown(display.port);
    unknown.send(beginnings[2] + "\x7F");
    EXPECT_LT(unknown.readAll().size(), 1000u);  // up to its end: the connection was closed
    const auto start = steady_clock::now();
    good.pointer(1, {1, 2});
    EXPECT_EQ(display.input(), "down 1,2");
    EXPECT_EQ(good.readPicture(), display.picture());
    EXPECT_LT(steady_clock::now() - start, 500ms);
}

TEST(BrowserDisturbance, AHangingClientIsDroppedWhileOthersDraw) {
    BrowserSettings settings = browserSettings();
    settings.patience = 2s;
    DisplayHost display(kLarge.size(), PixelFormat::Rgb24, settings);
    VncPeer hanging(display.port);
    VncPeer good(display.port);
    display.presentNoise(kLarge);
    for (int i = 0; i < 20; ++i) hanging.request(false, kLarge);
    for (int i = 0; i < 50; ++i) {
        const auto start = steady_clock::now();
        good.pointer(1, {i, i});
        EXPECT_NE(display.input(), "nothing");
        good.request(true, kLarge);
        display.presentNoise({i, i, 24, 24});
        good.readUpdate();
        EXPECT_TRUE(i == 0 || steady_clock::now() - start < 500ms);  // the first brings the whole panel
    }
    std::this_thread::sleep_for(settings.patience);
    EXPECT_LT(hanging.readAll().size(), std::size_t{1404} * 1872 * 4);  // ends in the midst of the first picture
    EXPECT_EQ(good.readPicture(), display.picture());
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

class BrowserAccess : public testing::Test {
protected:
    std::string refusal() {
        std::string error;
        EXPECT_EQ(openBrowser(settings_, kSmall, PixelFormat::Grey8, error), nullptr);
        return error;
    }

    BrowserSettings settings_ = browserSettings();
};

TEST_F(BrowserAccess, AnAddressNeedsAPassword) {
    EXPECT_THAT(DisplayHost(kSmall).address, testing::StartsWith("http://127.0.0.1:"));
    settings_.listen = "0.0.0.0";
    EXPECT_THAT(refusal(), HasSubstr("--password-file"));
    const TemporaryFolder folder;
    const std::string file = folder.write("password", "\n");
    for (const std::string& useless : {std::string("/nowhere/password"), file}) {
        settings_.passwordFile = useless;
        EXPECT_THAT(refusal(), HasSubstr(useless));
    }
    folder.write("password", "secret\n");
    const DisplayHost display(kSmall, PixelFormat::Rgb24, settings_);
    EXPECT_TRUE(VncPeer(display.port, "secret").admitted());
    EXPECT_FALSE(VncPeer(display.port, "guess").admitted());
}

TEST_F(BrowserAccess, SaysWhyItCannotOpen) {
    const DisplayHost taken(kSmall);
    settings_.port = taken.port;
    EXPECT_THAT(refusal(), HasSubstr(std::to_string(taken.port)));
    settings_.page = "/nowhere";
    EXPECT_THAT(refusal(), HasSubstr("/nowhere/index.html"));
}

}  // namespace
