#pragma once

#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/websocket.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "browser/display_host.h"
#include "platform/host/browser/messages.h"

/// Sends these bytes to the port of this machine; what comes back until the other side closes, or half a minute.
std::string ask(int port, const std::string& bytes);

/// The whole answer to a request.
std::string get(int port, const std::string& target, const std::string& headers = "Host: localhost\r\n");
/// The same for the door's form.
std::string knock(int port, const std::string& password);

/// What an answer sets, as a header that shows it again.
std::string cookieIn(const std::string& answer);
/// The cookie that opening the printed address gives.
std::string cookieOf(const DisplayHost& display);

/// A client of the panel's that comes as the page does.
class Peer {
public:
    using Action = host::PointerMessage::Action;
    using Kind = host::PointerMessage::Kind;

    explicit Peer(const DisplayHost& display, bool compressed = true);

    void say(const std::string& bytes);
    void pointer(Action action, float x, float y, std::uint32_t id = 1, Kind kind = Kind::Mouse);

    /// The next message; pixels are painted into the picture. Empty when the connection has ended.
    std::string hear();
    /// Hears until so many pixels have come; the largest message of them.
    std::size_t hearPixels(int count);
    /// The close code that the connection ends with, after all messages before.
    int hearEnd();

    std::optional<host::Framebuffer> picture;
    host::Rect area;  ///< of the last pixels
    boost::asio::io_context io;
    boost::beast::websocket::stream<boost::asio::ip::tcp::socket> socket{io};
};
