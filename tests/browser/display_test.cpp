#include <gmock/gmock.h>

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

TEST(BrowserAccess, AnAddressNeedsAPassword) {
    BrowserSettings settings = browserSettings();
    const auto refusal = [&settings] {
        std::string error;
        EXPECT_EQ(openBrowser(settings, kSmall, PixelFormat::Grey8, error), nullptr);
        return error;
    };
    EXPECT_THAT(DisplayHost(kSmall).address, testing::StartsWith("http://127.0.0.1:"));
    settings.listen = "0.0.0.0";
    EXPECT_THAT(refusal(), HasSubstr("--password-file"));
    const TemporaryFolder folder;
    const std::string file = folder.write("password", "\n");
    for (const std::string& useless : {std::string("/nowhere/password"), file}) {
        settings.passwordFile = useless;
        EXPECT_THAT(refusal(), HasSubstr(useless));
    }
    folder.write("password", "secret\n");
    const DisplayHost display(kSmall, PixelFormat::Rgb24, settings);
    EXPECT_TRUE(VncPeer(display.port, "secret").admitted());
    EXPECT_FALSE(VncPeer(display.port, "guess").admitted());
}

}  // namespace
