#include "browser/peer.h"

#include <algorithm>
#include <bit>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/tcp_stream.hpp>

namespace {

using boost::asio::ip::tcp;
namespace websocket = boost::beast::websocket;

tcp::endpoint serverAt(int port) {
    return {boost::asio::ip::address_v4::loopback(), static_cast<unsigned short>(port)};
}

std::string little(std::uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
    return bytes;
}

}  // namespace

std::string ask(int port, const std::string& bytes) {
    boost::asio::io_context io;
    boost::beast::tcp_stream stream(io);
    stream.connect(serverAt(port));
    boost::system::error_code error;
    boost::asio::write(stream, boost::asio::buffer(bytes), error);
    std::string answer;
    stream.expires_after(std::chrono::seconds(30));
    boost::asio::async_read(stream, boost::asio::dynamic_buffer(answer), [](boost::system::error_code, std::size_t) {});
    io.run();
    return answer;
}

std::string get(int port, const std::string& target, const std::string& headers) {
    return ask(port, "GET " + target + " HTTP/1.1\r\n" + headers + "\r\n");
}

std::string knock(int port, const std::string& password) {
    const std::string form = "password=" + password;
    return ask(port,
               "POST /door HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/x-www-form-urlencoded\r\n"
               "Content-Length: " +
                   std::to_string(form.size()) + "\r\n\r\n" + form);
}

std::string cookieIn(const std::string& answer) {
    const std::string mark = "Set-Cookie: ";
    const std::size_t at = answer.find(mark);
    if (at == std::string::npos) return {};
    const std::size_t begin = at + mark.size();
    return "Cookie: other=1; " + answer.substr(begin, answer.find(';', begin) - begin) + "\r\n";
}

std::string cookieOf(const DisplayHost& display) {
    return cookieIn(get(display.port, display.address.substr(display.address.rfind('/'))));
}

Peer::Peer(const DisplayHost& display, bool compressed) {
    socket.next_layer().connect(serverAt(display.port));
    socket.next_layer().set_option(tcp::no_delay(true));
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
    const auto number = [&panel](std::size_t at) {
        return static_cast<unsigned char>(panel.at(at)) | static_cast<unsigned char>(panel.at(at + 1)) << 8;
    };
    picture.emplace(host::Size{number(1), number(3)},
                    panel.at(5) == 1 ? host::PixelFormat::Grey8 : host::PixelFormat::Rgb24);
}

void Peer::say(const std::string& bytes) {
    boost::system::error_code ended;
    socket.write(boost::asio::buffer(bytes), ended);
}

void Peer::pointer(Action action, float x, float y, std::uint32_t id, Kind kind) {
    say(std::string{1, static_cast<char>(action), static_cast<char>(kind)} + little(id) +
        little(std::bit_cast<std::uint32_t>(x)) + little(std::bit_cast<std::uint32_t>(y)));
}

std::string Peer::hear() {
    std::string bytes(1 << 17, '\0');  // room for all of a message: the library inflates it wrong in pieces
    std::size_t count = 0;
    boost::system::error_code error;
    do count += socket.read_some(boost::asio::buffer(bytes) + count, error);
    while (!error && !socket.is_message_done());
    bytes.resize(error ? 0 : count);
    if (!bytes.starts_with('\2')) return bytes;
    const auto number = [&bytes](std::size_t at) {
        return static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1]) << 8;
    };
    area = {number(1), number(3), number(5), number(7)};
    const std::size_t row = static_cast<std::size_t>(area.w) * static_cast<std::size_t>(picture->bytesPerPixel());
    for (int y = 0; y < area.h; ++y)
        bytes.copy(reinterpret_cast<char*>(picture->at(area.x, area.y + y)), row,
                   9 + row * static_cast<std::size_t>(y));
    return bytes;
}

std::size_t Peer::hearPixels(int count) {
    std::size_t largest = 0;
    while (count > 0) {
        const std::string message = hear();
        if (message.empty()) break;
        if (message.starts_with('\2')) count -= area.w * area.h;
        largest = std::max(largest, message.size());
    }
    return largest;
}

int Peer::hearEnd() {
    while (!hear().empty()) {
    }
    return socket.reason().code;
}
