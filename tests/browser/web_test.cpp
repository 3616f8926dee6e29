#include <gmock/gmock.h>

#include "browser/display_host.h"
#include "browser/vnc_peer.h"

using namespace host;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class BrowserWeb : public testing::Test {
protected:
    std::string get(const std::string& target, const std::string& name = "127.0.0.1", const std::string& headers = {}) {
        Peer peer(display_.port);
        peer.send("GET " + target + " HTTP/1.1\r\nHost: " + name + "\r\n" + headers + "\r\n");
        return peer.readAll();
    }

    DisplayHost display_{{101, 47}};
};

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
}

TEST_F(BrowserWeb, IsClosedToOtherPages) {
    for (const char* name : {"evil.example", "127.0.0.1.evil.example"})
        EXPECT_THAT(get("/", name), StartsWith("HTTP/1.1 403")) << name;
    for (const auto& [name, origin] :
         {std::pair("evil.example", "http://evil.example"), std::pair("127.0.0.1:6080", "http://evil.example"),
          std::pair("127.0.0.1:6080", "http://127.0.0.1:80")}) {
        const std::string upgrade = std::string("Origin: ") + origin +
                                    "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: "
                                    "13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n";
        EXPECT_THAT(get("/panel", name, upgrade), StartsWith("HTTP/1.1 403")) << name << " " << origin;
    }
}

}  // namespace
