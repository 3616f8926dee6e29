#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/host/browser/admission.h"
#include "platform/host/browser/panel_client.h"

namespace host {

/// What visitors are shown and who came of them. Owned by the display, outlives its visitors.
struct Site {
    Admission admission;
    std::filesystem::path page;  ///< the folder of the page's files
    int port;
    std::chrono::milliseconds patience;
    Stage& stage;
    std::vector<std::shared_ptr<PanelClient>> clients{};
};

/// One connection with one request, until it is answered or has become a client of the panel. Operations in progress
/// keep it alive.
class Visitor : public std::enable_shared_from_this<Visitor> {
public:
    Visitor(boost::asio::ip::tcp::socket socket, Site& site);

    /// Waits for the request and answers it.
    void serve();

    /// True once it has shown the cookie.
    [[nodiscard]] bool admitted() const { return admitted_; }

    void drop() { stream_.close(); }

private:
    using Response = boost::beast::http::response<boost::beast::http::string_body>;
    using Status = boost::beast::http::status;

    void answer();
    void answerPage(const std::string& path);
    void answerPanel();
    /// Answers whoever tries a token or password.
    void judge(const std::string& secret);
    void showDoor(const char* state);
    void sendOn(bool withCookie);
    void say(Status status, const char* sentence);
    void send(Status status, const std::string& type, std::string body);
    [[nodiscard]] std::string header(boost::beast::http::field name) const;

    boost::beast::tcp_stream stream_;
    Site& site_;
    bool admitted_ = false;
    boost::beast::flat_buffer buffer_;
    boost::beast::http::request_parser<boost::beast::http::string_body> parser_;
    Response response_;
    boost::asio::steady_timer timer_;
};

}  // namespace host
