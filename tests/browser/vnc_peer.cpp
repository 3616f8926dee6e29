#include "browser/vnc_peer.h"

#include <netinet/in.h>
#include <rfb/rfb.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>

namespace {

std::string big16(int value) { return {static_cast<char>(value >> 8), static_cast<char>(value)}; }

}  // namespace

Peer::Peer(int port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    constexpr timeval kLimit{15, 0};
    setsockopt(socket_.get(), SOL_SOCKET, SO_RCVTIMEO, &kLimit, sizeof kLimit);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) leave();
}

void Peer::send(const std::string& bytes) {
    static_cast<void>(!::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

std::string Peer::read(int count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    const ssize_t got = recv(socket_.get(), bytes.data(), bytes.size(), MSG_WAITALL);
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return bytes;
}

VncPeer::VncPeer(int port, const std::string& password) : Peer(port) {
    send(read(12));
    const std::string types = read(number(1));
    send(types.substr(0, 1));
    if (types == "\2") {
        std::string challenge = read(16);
        std::string key = password + std::string(8, '\0');
        rfbEncryptBytes(reinterpret_cast<unsigned char*>(challenge.data()), key.data());
        send(challenge);
    }
    admitted_ = read(4) == std::string(4, '\0');
    if (!admitted_) return;
    send("\1");
    size_ = {number(2), number(2)};
    read(16);  // the format of a pixel
    read(number(4));
    picture_.resize(static_cast<std::size_t>(size_.w) * static_cast<std::size_t>(size_.h) * 4);
    send(std::string("\2\0\0\1\0\0\0\0", 8));
}

int VncPeer::number(int bytes) {
    int value = 0;
    for (const char byte : read(bytes)) value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

void VncPeer::request(bool incremental, host::Rect area) {
    send(std::string("\3") + static_cast<char>(incremental) + big16(area.x) + big16(area.y) + big16(area.w) +
         big16(area.h));
}

std::vector<host::Rect> VncPeer::readUpdate() {
    std::vector<host::Rect> areas;
    read(2);  // the kind of message and padding
    for (int rest = number(2); rest > 0; --rest) {
        const host::Rect area{number(2), number(2), number(2), number(2)};
        read(4);  // the encoding: raw
        for (int y = area.y; y < area.bottom(); ++y) {
            const std::string row = read(area.w * 4);
            picture_.replace(static_cast<std::size_t>(y * size_.w + area.x) * 4, row.size(), row);
        }
        areas.push_back(area);
    }
    return areas;
}

const std::string& VncPeer::readPicture() {
    request(false, {0, 0, size_.w, size_.h});
    int rows = 0;
    while (rows < size_.h) {
        const std::vector<host::Rect> areas = readUpdate();
        if (areas.empty()) break;
        for (const host::Rect& area : areas) rows += area.h;  // each is as wide as the panel
    }
    // The fourth byte of a pixel means nothing.
    for (std::size_t i = 3; i < picture_.size(); i += 4) picture_[i] = 0;
    return picture_;
}

void VncPeer::pointer(int buttons, host::Point at) {
    send(std::string("\5") + static_cast<char>(buttons) + big16(at.x) + big16(at.y));
}
