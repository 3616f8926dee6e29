#pragma once

#include <array>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/websocket.hpp>

#include "browser/display_host.h"
#include "platform/host/browser/messages.h"

inline boost::asio::ip::tcp::endpoint serverAt(int port) {
    return {boost::asio::ip::address_v4::loopback(), static_cast<unsigned short>(port)};
}

/// Sends these bytes to the port of this machine; what comes back until the other side closes, or half a minute.
inline std::string ask(int port, const std::string& bytes) {
    boost::asio::ip::tcp::iostream stream(serverAt(port));
    stream.expires_after(std::chrono::seconds(30));
    stream << bytes << std::flush;
    return {std::istreambuf_iterator<char>(stream.rdbuf()), {}};
}

/// The whole answer to a request.
inline std::string get(int port, const std::string& target, const std::string& headers = "Host: localhost\r\n") {
    return ask(port, "GET " + target + " HTTP/1.1\r\n" + headers + "\r\n");
}

/// The same for the door's form.
inline std::string knock(int port, const std::string& password) {
    const std::string form = "password=" + password;
    return ask(port, "POST /door HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/x-www-form-urlencoded\r\n" +
                         ("Content-Length: " + std::to_string(form.size())) + "\r\n\r\n" + form);
}

/// What an answer sets, as a header that shows it again.
inline std::string cookieIn(const std::string& answer) {
    const std::string mark = "Set-Cookie: ";
    const std::size_t begin = answer.find(mark) + mark.size();
    return begin < mark.size() ? ""
                               : "Cookie: other=1; " + answer.substr(begin, answer.find(';', begin) - begin) + "\r\n";
}

/// The cookie that opening the printed address gives.
inline std::string cookieOf(const DisplayHost& display) {
    return cookieIn(get(display.port, display.address.substr(display.address.rfind('/'))));
}

/// A client of the panel's that comes as the page does.
class Peer {
public:
    using Action = host::PointerMessage::Action;
    using Kind = host::PointerMessage::Kind;

    explicit Peer(const DisplayHost& display, bool compressed = true) {
        namespace websocket = boost::beast::websocket;
        socket.next_layer().connect(serverAt(display.port));
        socket.next_layer().set_option(boost::asio::ip::tcp::no_delay(true));
        websocket::permessage_deflate deflate;
        deflate.client_enable = compressed;
        socket.set_option(deflate);
        const std::string cookie = cookieOf(display).substr(std::string("Cookie: ").size());
        socket.set_option(websocket::stream_base::decorator([&cookie](websocket::request_type& request) {
            request.set("Origin", "http://localhost");
            request.set("Cookie", cookie.substr(0, cookie.find('\r')));
        }));
        socket.handshake("localhost", "/panel");
        socket.binary(true);
        const std::string panel = hear();
        picture.emplace(host::Size{numberAt(panel, 1), numberAt(panel, 3)},
                        panel.at(5) == 1 ? host::PixelFormat::Grey8 : host::PixelFormat::Rgb24);
    }

    void say(const std::string& bytes) {
        boost::system::error_code ended;
        socket.write(boost::asio::buffer(bytes), ended);
    }

    void pointer(Action action, float x, float y) {
        const std::array<float, 2> at{x, y};
        say(std::string{1, static_cast<char>(action), static_cast<char>(Kind::Mouse), 1, 0, 0, 0} +
            std::string(reinterpret_cast<const char*>(at.data()), sizeof at));
    }

    /// The next message; pixels are painted into the picture. Empty when the connection has ended.
    std::string hear() {
        std::string bytes(1 << 17, '\0');  // room for all of a message: the library inflates it wrong in pieces
        std::size_t count = 0;
        boost::system::error_code error;
        do count += socket.read_some(boost::asio::buffer(bytes) + count, error);
        while (!error && !socket.is_message_done());
        bytes.resize(error ? 0 : count);
        if (!bytes.starts_with('\2')) return bytes;
        area = {numberAt(bytes, 1), numberAt(bytes, 3), numberAt(bytes, 5), numberAt(bytes, 7)};
        const auto row = static_cast<std::size_t>(area.w * picture->bytesPerPixel());
        std::size_t from = 9;
        for (int y = area.y; y < area.bottom(); ++y, from += row)
            bytes.copy(reinterpret_cast<char*>(picture->at(area.x, y)), row, from);
        return bytes;
    }

    /// Hears until so many pixels have come; the largest message of them.
    std::size_t hearPixels(int count) {
        std::size_t largest = 0;
        for (std::string message; count > 0 && !(message = hear()).empty();) {
            if (message.starts_with('\2')) count -= area.w * area.h;
            largest = std::max(largest, message.size());
        }
        return largest;
    }

    /// The close code that the connection ends with, after all messages before.
    int hearEnd() {
        while (!hear().empty()) {
        }
        return socket.reason().code;
    }

    std::optional<host::Framebuffer> picture;
    host::Rect area;  ///< of the last pixels
    boost::asio::io_context io;
    boost::beast::websocket::stream<boost::asio::ip::tcp::socket> socket{io};

private:
    static int numberAt(const std::string& bytes, std::size_t at) {
        return static_cast<unsigned char>(bytes.at(at)) | static_cast<unsigned char>(bytes.at(at + 1)) << 8;
    }
};
