#include <gmock/gmock.h>
#include <sys/resource.h>

#include <boost/asio/write.hpp>
#include <random>

#include "browser/peer.h"
#include "platform/host/panel/drawing.h"

using namespace host;
using namespace std::chrono_literals;
using namespace std::string_literals;
using std::chrono::steady_clock;

namespace {

using Action = Peer::Action;
using Kind = Peer::Kind;

constexpr Size kSmall{101, 47};  // odd, so that padding of rows cannot hide
constexpr Rect kLarge{0, 0, 1404, 1872};
constexpr std::size_t kBand = 9 + 65536;

TEST(BrowserPicture, IsExactlyThePanels) {
    for (const auto& [size, format] : {std::pair(kSmall, PixelFormat::Rgb24), std::pair(kSmall, PixelFormat::Grey8),
                                       std::pair(kLarge.size(), PixelFormat::Rgb24)}) {
        DisplayHost display(size, format);
        display.presentNoise({0, 0, size.w, size.h});
        Peer plain(display, false);
        Peer compressed(display);
        for (Peer* const peer : {&plain, &compressed}) {
            EXPECT_LE(peer->hearPixels(size.w * size.h), kBand);
            EXPECT_TRUE(*peer->picture == display.picture);
        }
        display.presentNoise({7, 3, 24, 25});
        for (Peer* const peer : {&plain, &compressed}) {
            peer->hear();
            EXPECT_EQ(peer->area, (Rect{7, 3, 24, 25}));
            EXPECT_TRUE(*peer->picture == display.picture);
        }
    }
}

TEST(BrowserPicture, ShowsInkBeforeTheRestOfAPage) {
    DisplayHost display(kLarge.size());
    Peer peer(display);
    display.presentNoise(kLarge);  // more than the system keeps for a client that does not read
    display.presentNoise({700, 900, 24, 24});
    int before = 0;
    while (peer.area != Rect{700, 900, 24, 24}) {
        ASSERT_FALSE(peer.hear().empty());
        before += peer.area.w * peer.area.h;
        ASSERT_LT(before, kLarge.w * kLarge.h);
    }
    while (!(*peer.picture == display.picture)) ASSERT_FALSE(peer.hear().empty());
}

TEST(BrowserPicture, WetInkComesAfterThePieceThatItGoesOnFrom) {
    const WetInk ink{{{3, 2}, {90, 40}}, 0xFF0000, 7};
    for (const auto& [format, colour] :
         {std::pair(PixelFormat::Rgb24, "\xFF\0\0"s), std::pair(PixelFormat::Grey8, "\x4C\x4C\x4C"s)}) {
        DisplayHost display(kSmall, format);
        display.presentNoise({0, 0, kSmall.w, kSmall.h});
        Peer peer(display);
        peer.hearPixels(kSmall.w * kSmall.h);
        display.run([&](Display& shown) {
            shown.present(display.picture, {1, 1, 5, 5});
            shown.wetInk(&ink);
        });
        EXPECT_EQ(peer.hear().front(), '\2');
        EXPECT_EQ(peer.hear(), "\5\3\0\2\0\7\0"s + colour);
        display.run([](Display& shown) { shown.wetInk(nullptr); });
        EXPECT_EQ(peer.hear(), "\5");
    }
}

TEST(BrowserPointer, StaysOnThePanelAndOthersAreTold) {
    DisplayHost display(kSmall);
    Peer first(display), second(display);
    first.pointer(Action::Down, 3.99F, 4.0F);
    EXPECT_EQ(display.input(), "down 3,4");
    second.pointer(Action::Down, 20, 21);
    EXPECT_EQ(second.hear(), "\3\1");
    second.pointer(Action::Up, 20, 21);
    first.pointer(Action::Move, -1, 1e9F);
    EXPECT_EQ(display.input(), "move 0,46");
    boost::system::error_code ignored;
    first.socket.next_layer().close(ignored);
    EXPECT_EQ(display.input(), "up 0,46");
    EXPECT_EQ(second.hear(), "\3\0"s);
    second.pointer(Action::Down, 100.5F, 46.5F);
    EXPECT_EQ(display.input(), "down 100,46");
}

TEST(BrowserKeyboard, IsHeardWhileTextIsTaken) {
    DisplayHost display(kSmall);
    Peer peer(display);
    peer.say("\3lost");
    peer.pointer(Action::Down, 1, 1);
    EXPECT_EQ(display.input(), "down 1,1");
    display.run([](Display& shown) { shown.setTextInput(true, {-3, 258, 30, 4}); });
    EXPECT_EQ(peer.hear(), "\4\1\xFD\xFF\2\1\x1E\0\4\0"s);
    const std::string longest(4096, 'a');  // compressed to a few bytes
    peer.say("\3" + longest);
    EXPECT_EQ(display.input(), "text " + longest);
    peer.say("\3w\xC3\xB6rld \xE6\xBC\xA2");
    peer.say("\2\12");
    EXPECT_EQ(display.input(), "text wörld 漢");
    EXPECT_EQ(display.input(), "key " + std::to_string(static_cast<int>(Key::End)));
    display.run([](Display& shown) { shown.setTextInput(false, {}); });
    EXPECT_EQ(peer.hear(), "\4\0\0\0\0\0\0\0\0\0"s);
}

/// Somebody draws while others disturb; each of these is seen to go on at once.
struct BrowserDisturbance : testing::Test {
    BrowserDisturbance() {
        hand_.pointer(Action::Down, 0, 0);
        EXPECT_EQ(display_.input(), "down 0,0");
    }
    ~BrowserDisturbance() override { drawOn(); }

    void drawOn() {
        step_ = (step_ + 1) % kLarge.w;
        const auto start = steady_clock::now();
        hand_.pointer(Action::Move, static_cast<float>(step_), 1);
        EXPECT_EQ(display_.input(), "move " + std::to_string(step_) + ",1");
        EXPECT_LT(steady_clock::now() - start, 1s);
    }

    static constexpr auto kPatience = 2s;
    DisplayHost display_{kLarge.size(), PixelFormat::Rgb24, browserSettings(kPatience)};
    Peer hand_{display_};
    int step_ = 0;
};

TEST_F(BrowserDisturbance, StrangersStayOutside) {
    const std::string upgrade =
        "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
        "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n";
    const std::string cookie = cookieOf(display_), here = "Host: localhost\r\n";
    const std::string wrong = "Cookie: colour-" + std::to_string(display_.port) + "=" + std::string(64, '0') + "\r\n";
    for (const std::string& headers :
         {here + "Origin: http://evil.example\r\n" + cookie,
          "Host: evil.example\r\nOrigin: http://evil.example\r\n" + cookie,
          "Host: localhost:6080\r\nOrigin: http://localhost\r\n" + cookie, here + cookie,
          here + "Origin: http://localhost\r\n", here + "Origin: http://localhost\r\n" + wrong}) {
        EXPECT_EQ(get(display_.port, "/panel", headers + upgrade).substr(9, 3), "403") << headers;
        drawOn();
    }
}

TEST_F(BrowserDisturbance, WhoSpeaksWronglyIsSentAway) {
    const std::string place(8, '\0');
    const std::string wrong[] = {"\7",
                                 "",
                                 "\1",
                                 "\2\13",
                                 "\2\1\1",
                                 "\3",
                                 "\3\xFF",
                                 "\3" + std::string(4097, 'a'),
                                 "\1\3\0\1\0\0\0"s + place,
                                 "\1\0\3\1\0\0\0"s + place,
                                 "\1\0\0\1\0\0\0"s + place + place,
                                 "\1\1\0\1\0\0\0"s + place + "\1",
                                 "\1\1\0\1\0\0\0\0\0\xC0\x7F\0\0\0\0"s};
    for (const std::string& message : wrong) {
        Peer peer(display_);
        peer.say(message);
        EXPECT_EQ(peer.hearEnd(), 1002) << testing::PrintToString(message);
        drawOn();
    }
    Peer inText(display_);
    inText.socket.text(true);
    inText.say("\3a");
    EXPECT_EQ(inText.hearEnd(), 1002);
    Peer tooLong(display_);
    tooLong.say("\1\1\0\1\0\0\0"s + std::string(8192, '\0'));
    EXPECT_EQ(tooLong.hearEnd(), 1009);
    std::mt19937 random(3);
    for (int round = 0; round < 60; ++round) {
        std::string rubbish(1 + random() % 300, '\0');
        for (char& byte : rubbish) byte = static_cast<char>(random());
        Peer peer(display_);
        boost::system::error_code ignored;
        boost::asio::write(peer.socket.next_layer(), boost::asio::buffer(rubbish), ignored);  // be it part of a frame
        if (round % 2 == 0) ask(display_.port, rubbish + "\r\n\r\n");
        drawOn();
    }
}

TEST_F(BrowserDisturbance, IdleConnectionsLockNobodyOut) {
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = 300;  // too few for both ends of all
    setrlimit(RLIMIT_NOFILE, &files);
    boost::asio::io_context io;
    std::vector<boost::asio::ip::tcp::socket> idle;
    for (int i = 0; i < 200; ++i) {
        idle.emplace_back(io).connect(serverAt(display_.port));
        if (i % 20 == 0) drawOn();
    }
    for (int i = 0; i < 40; ++i) Peer another(display_);  // more than may come at once
    EXPECT_THAT(get(display_.port, "/icon.svg"), testing::StartsWith("HTTP/1.1 200"));
}

TEST_F(BrowserDisturbance, AHangingClientIsDropped) {
    Peer hanging(display_);
    int pixels = kLarge.w * kLarge.h;
    for (const auto start = steady_clock::now(); steady_clock::now() - start < 4 * kPatience;) {
        display_.presentNoise(kLarge);
        hand_.hearPixels(std::exchange(pixels, 24 * 24));
        drawOn();
        hanging.say("\3x");  // it only does not listen
    }
    long heard = 0;
    while (!hanging.hear().empty()) heard += hanging.area.w * hanging.area.h;
    EXPECT_LT(heard, long{kLarge.w} * kLarge.h) << "ends in the midst of the first picture";
}

struct BrowserDrawing : testing::Test {
    /// What comes of a pointer's message, in words.
    std::string does(int client, Action action, Kind kind, std::uint64_t id, const std::vector<Point>& path) {
        std::string words = drawing_.pointer(client, {action, kind, id}, path, now_) ? "" : "refused ";
        for (; !inputs_.empty(); inputs_.pop_front()) words += inWords(inputs_.front()) + ' ';
        return words;
    }

    SteadyTime now_{1h};
    std::deque<Input> inputs_;
    Drawing drawing_{inputs_};
};

TEST_F(BrowserDrawing, BelongsToWhoeverCameFirst) {
    EXPECT_EQ(does(1, Action::Down, Kind::Finger, 5, {{1, 1}}), "down 1,1 ");
    EXPECT_EQ(does(1, Action::Down, Kind::Finger, 6, {{2, 2}}), "") << "a second finger of the same hand";
    EXPECT_EQ(does(2, Action::Down, Kind::Pen, 5, {{3, 3}}), "refused ");
    EXPECT_TRUE(drawing_.drawnByAnother(2));
    EXPECT_EQ(does(2, Action::Move, Kind::Pen, 5, {{4, 4}}), "");
    EXPECT_EQ(does(1, Action::Up, Kind::Finger, 6, {{5, 5}}), "");
    drawing_.leave(2);
    EXPECT_EQ(does(1, Action::Move, Kind::Finger, 5, {{6, 6}, {7, 7}}), "move 6,6 move 7,7 ");
    drawing_.leave(1);
    EXPECT_EQ(does(2, Action::Move, Kind::Pen, 5, {{8, 8}}), "up 7,7 ") << "a press that was ignored stays so";
    EXPECT_EQ(does(2, Action::Down, Kind::Pen, 5, {{9, 9}}), "down 9,9 ");
}

TEST_F(BrowserDrawing, ThePenTakesOverFromThePalm) {
    EXPECT_EQ(does(1, Action::Down, Kind::Finger, 5, {{1, 1}}), "down 1,1 ");
    EXPECT_EQ(does(1, Action::Move, Kind::Finger, 5, {{2, 2}}), "move 2,2 ");
    EXPECT_EQ(does(1, Action::Down, Kind::Pen, 9, {{3, 3}}), "up 2,2 down 3,3 ");
    EXPECT_EQ(does(1, Action::Move, Kind::Finger, 5, {{4, 4}}), "");
    EXPECT_EQ(does(1, Action::Down, Kind::Finger, 6, {{5, 5}}), "");
    EXPECT_EQ(does(1, Action::Up, Kind::Pen, 9, {{6, 6}}), "up 6,6 ");
    now_ += 499ms;
    EXPECT_EQ(does(1, Action::Down, Kind::Finger, 7, {{7, 7}}), "") << "the palm once more";
    EXPECT_EQ(does(2, Action::Down, Kind::Finger, 7, {{8, 8}}), "down 8,8 ") << "another hand";
    EXPECT_EQ(does(2, Action::Up, Kind::Finger, 7, {{8, 8}}), "up 8,8 ");
    now_ += 1ms;
    EXPECT_EQ(does(1, Action::Down, Kind::Finger, 7, {{9, 9}}), "down 9,9 ");
    EXPECT_EQ(does(1, Action::Down, Kind::Mouse, 8, {{1, 1}}), "");
}

}  // namespace
