#include <gmock/gmock.h>

#include <future>

#include "browser/peer.h"
#include "support/temporary_folder.h"

using namespace host;
using namespace std::chrono_literals;
using std::chrono::steady_clock;
using namespace testing;

namespace {

constexpr Size kPanel{101, 47};
constexpr const char* kLocal = "Host: localhost\r\n";

/// With a place of its own for the token.
struct BrowserWeb : Test {
    BrowserWeb() { setenv("XDG_STATE_HOME", folder_.path().c_str(), 1); }

    std::unique_ptr<DisplayHost> open() { return std::make_unique<DisplayHost>(kPanel, PixelFormat::Grey8, settings_); }

    /// Why it does not open.
    std::string refusal() {
        std::string error;
        EXPECT_EQ(openBrowser(settings_, kPanel, PixelFormat::Grey8, error), nullptr);
        return error;
    }

    TemporaryFolder folder_;
    BrowserSettings settings_ = browserSettings();
};

TEST_F(BrowserWeb, ServesThePageAndWhatItLoadsAndNothingElse) {
    const auto display = open();
    const std::string headers = kLocal + cookieOf(*display);
    EXPECT_THAT(get(display->port, "/", headers), ContainsRegex("^HTTP/1.1 200.*text/html.*<title>Colour"));
    EXPECT_THAT(get(display->port, "/page.js?1", headers), ContainsRegex("^HTTP/1.1 200.*text/javascript"));
    for (const std::string path : {"/../page.js", "//page.js", "/%2e%2e/browser/page.js", "/../theme.ini",
                                   "/nothing.js", "/.page.js", "/door/", "/page.js/"}) {
        EXPECT_THAT(get(display->port, path, headers), StartsWith("HTTP/1.1 404")) << path;
    }
    EXPECT_THAT(ask(display->port, "PUT / HTTP/1.1\r\n" + headers + "\r\n"), StartsWith("HTTP/1.1 405"));
}

TEST_F(BrowserWeb, AnswersToTheNamesOfThisMachine) {
    settings_.hostNames = {"Draw.example", "second"};
    const auto display = open();
    for (const std::string name :
         {"127.0.0.1", "localhost:6080", "192.168.1.2:1", "[::1]:6080", "draw.EXAMPLE", "second:443"})
        EXPECT_THAT(get(display->port, "/icon.svg", "Host: " + name + "\r\n"), StartsWith("HTTP/1.1 200")) << name;
    for (const std::string name : {"evil.example", "127.0.0.1.evil.example", "example", "[127.0.0.1]", "", "["}) {
        EXPECT_THAT(get(display->port, "/icon.svg", "Host: " + name + "\r\n"),
                    AllOf(StartsWith("HTTP/1.1 403"), HasSubstr("--host-name")))
            << name;
    }
}

TEST_F(BrowserWeb, TheAddressAdmitsAndItsTokenIsKept) {
    std::string address, cookie;
    {
        const auto display = open();
        address = display->address;
        EXPECT_THAT(address, MatchesRegex("http://127.0.0.1:[0-9]+/\\?token=[0-9a-f]{32}"));
        for (const char* closed : {"/", "/page.js", "/admitted"})
            EXPECT_THAT(get(display->port, closed), StartsWith("HTTP/1.1 403")) << closed;
        EXPECT_THAT(get(display->port, "/door.html"), StartsWith("HTTP/1.1 200"));
        const std::string answer = get(display->port, address.substr(address.rfind('/')));
        EXPECT_THAT(answer, AllOf(StartsWith("HTTP/1.1 303"), HasSubstr("Location: /\r\n"),
                                  HasSubstr("HttpOnly; SameSite=Strict; Path=/")));
        cookie = cookieIn(answer);
    }
    settings_.port = std::stoi(address.substr(address.rfind(':') + 1));
    EXPECT_THAT(get(open()->port, "/admitted", kLocal + cookie), StartsWith("HTTP/1.1 204"));
    const std::filesystem::path file = folder_ / "colour" / "token";
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
    for (const auto& spoil : std::vector<std::function<void()>>{
             [&] { std::filesystem::permissions(file, std::filesystem::perms(0644)); },
             [&] { std::filesystem::resize_file(file, 20); }, [&] { std::filesystem::remove_all(file.parent_path()); },
             [&] { std::filesystem::remove_all(file.parent_path()), folder_.write("colour", "in the way"); }}) {
        spoil();
        EXPECT_NE(std::exchange(address, open()->address), address);
    }
}

TEST_F(BrowserWeb, WrongOnesAreAnsweredASecondLaterOneByOne) {
    settings_.passwordFile = folder_.write("password", "sësame open+\r\nmore");
    auto display = open();
    EXPECT_THAT(display->address, EndsWith("/"));
    EXPECT_THAT(get(display->port, "/"), AllOf(StartsWith("HTTP/1.1 403"), HasSubstr("class=\"password\"")));
    const auto start = steady_clock::now();
    std::vector<std::future<std::string>> tries;
    for (int i = 0; i < 3; ++i) tries.push_back(std::async(std::launch::async, knock, display->port, "guess"));
    for (auto& guess : tries) EXPECT_THAT(guess.get(), AllOf(StartsWith("HTTP/1.1 403"), HasSubstr("class=\"wrong\"")));
    const std::string right = knock(display->port, "s%C3%ABsame+open%2B");
    EXPECT_GE(steady_clock::now() - start, 3s);
    const std::string headers = kLocal + cookieIn(right);
    EXPECT_THAT(get(display->port, "/admitted", headers), StartsWith("HTTP/1.1 204"));

    settings_.port = display->port;
    display.reset();
    folder_.write("password", "another one");
    EXPECT_THAT(get(open()->port, "/admitted", headers), StartsWith("HTTP/1.1 403"));
    settings_.passwordFile.clear();
    display = open();
    const auto again = steady_clock::now();
    EXPECT_THAT(get(display->port, "/?token=" + std::string(32, '0')), StartsWith("HTTP/1.1 403"));
    EXPECT_GE(steady_clock::now() - again, 1s);
}

TEST_F(BrowserWeb, WhatKeepsItFromOpeningIsSaid) {
    const auto other = open();
    settings_.port = other->port;
    EXPECT_THAT(refusal(), HasSubstr("port " + std::to_string(other->port) + ": Address already in use"));
    settings_.listen = "localhost";
    EXPECT_THAT(refusal(), HasSubstr("localhost: not a numeric address"));
    settings_.listen = "192.0.2.1";  // of no machine
    EXPECT_THAT(refusal(), HasSubstr("cannot listen on 192.0.2.1"));
    settings_.passwordFile = folder_.write("password", "sëcrets\r\n");
    EXPECT_THAT(refusal(), HasSubstr("fewer than eight characters"));
    settings_.passwordFile = "/nowhere/password";
    EXPECT_THAT(refusal(), StartsWith("/nowhere/password: "));
    settings_.passwordFile.clear();
    settings_.page = folder_.path();
    EXPECT_THAT(refusal(), HasSubstr("index.html: missing"));
}

}  // namespace
