#include <gmock/gmock.h>

#include "browser/display_host.h"
#include "browser/vnc_peer.h"
#include "platform/host/panel/browser_websocket.h"
#include "platform/host/panel/vnc_messages.h"

using namespace host;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class BrowserWeb : public testing::Test {
protected:
    std::string get(const std::string& target, const std::string& name = "127.0.0.1") {
        Peer peer(display_.port);
        peer.send("GET " + target + " HTTP/1.1\r\nHost: " + name + "\r\n\r\n");
        return peer.readAll();
    }

    std::string upgrade(Peer& peer, const std::string& name, const std::string& origin) {
        peer.send("GET /panel HTTP/1.1\r\nHost: " + name + "\r\nOrigin: " + origin +
                  "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                  "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
        std::string answer;
        while (answer.find("\r\n\r\n") == std::string::npos) {
            const std::string byte = peer.read(1);
            if (byte.empty()) break;
            answer += byte;
        }
        return answer;
    }

    DisplayHost display_{{101, 47}};
};

std::string masked(char first, const std::string& payload) {
    const std::string mask = "\x11\x22\x33\x44";
    std::string frame{first, static_cast<char>(0x80 | payload.size())};
    frame += mask;
    for (std::size_t i = 0; i < payload.size(); ++i) frame += static_cast<char>(payload[i] ^ mask[i % 4]);
    return frame;
}

TEST_F(BrowserWeb, ServesThePageAndWhatItLoadsAndNothingElse) {
    EXPECT_THAT(get("/"),
                AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("text/html"), HasSubstr("<title>Colour</title>")));
    EXPECT_THAT(get("/page.js?1"), AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("text/javascript")));
    EXPECT_THAT(get("/novnc/core/rfb.js", "localhost:6080"), StartsWith("HTTP/1.1 200"));
    for (const std::string path :
         {"/novnc/core/../../../../etc/hostname", "/../page.js", "//page.js", "/novnc/vnc.html",
          "/novnc/core/%2e%2e/vnc.html", "/nothing.js", "/novnc/core/", "/.page.js"}) {
        EXPECT_THAT(get(path), StartsWith("HTTP/1.1 404")) << path;
    }
    Peer poster(display_.port);
    poster.send("POST / HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
    EXPECT_THAT(poster.readAll(), StartsWith("HTTP/1.1 405"));
}

TEST_F(BrowserWeb, IsClosedToOtherPages) {
    for (const char* name : {"evil.example", "127.0.0.1.evil.example"})
        EXPECT_THAT(get("/", name), StartsWith("HTTP/1.1 403")) << name;
    for (const auto& [name, origin] :
         {std::pair("evil.example", "http://evil.example"), std::pair("127.0.0.1:6080", "http://evil.example"),
          std::pair("127.0.0.1:6080", "http://127.0.0.1:80")}) {
        Peer peer(display_.port);
        EXPECT_THAT(upgrade(peer, name, origin), StartsWith("HTTP/1.1 403")) << name << " " << origin;
    }
}

TEST_F(BrowserWeb, CarriesThePanelOverAWebSocket) {
    Peer peer(display_.port);
    const std::string answer = upgrade(peer, "127.0.0.1", "http://127.0.0.1");
    EXPECT_THAT(answer, AllOf(StartsWith("HTTP/1.1 101"), HasSubstr("s3pPLMBiTxaQ9kYGzzhZRbK+xOo=")));  // RFC 6455, 1.3
    EXPECT_EQ(peer.read(14), "\x82\x0CRFB 003.008\n");
    peer.send(masked('\x82', "RFB 003.008\n"));
    EXPECT_EQ(peer.read(4), "\x82\x02\x01\x01");
    peer.send(masked('\x89', "still there?"));
    EXPECT_EQ(peer.read(14), "\x8A\x0Cstill there?");
    // Messages and frames need not begin together, and a frame may come byte by byte.
    std::string rest = masked('\x02', "\1") + masked('\x80', "\1\5\1" + std::string(1, '\0'));
    rest += masked('\x82', std::string("\x09\0\x08", 3));
    for (const char byte : rest) peer.send({byte});
    EXPECT_EQ(display_.input(), "down 9,8");
}

TEST(WebSocketReader, ClosesOnWhatNoBrowserSends) {
    const std::string unmasked = std::string("\x82\x03") + "abc";
    const std::string longPing(
        "\x89\xFE\1\0"
        "1234",
        8);
    for (const std::string& frame : {unmasked, masked('\x81', "text"), masked('\x88', ""), longPing})
        EXPECT_TRUE(WebSocketReader().read(frame).closed) << testing::PrintToString(frame);
    EXPECT_FALSE(WebSocketReader().read(masked('\x82', "")).closed);
    EXPECT_EQ(webSocketFrame(std::string(70000, 'x')).substr(0, 10), std::string("\x82\x7F\0\0\0\0\0\1\x11\x70", 10));
}

TEST(VncMessages, KeepOnlyLosslessEncodings) {
    // Asked for are Tight, JPEG quality 6, compression 1 and a cursor.
    const std::string tight("\0\0\0\7", 4), quality = "\xFF\xFF\xFF\xE6", cursor = "\xFF\xFF\xFF\x11",
                                            compression = "\xFF\xFF\xFF\1";
    EXPECT_EQ(vettedVncMessage(std::string("\2\0\0\4", 4) + tight + quality + compression + cursor),
              std::string("\2\0\0\2", 4) + tight + compression);
}

}  // namespace
