#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/host/base/geometry.h"
#include "platform/host/browser/browser_socket.h"

/// A TCP connection of a test's, which waits at most 15 seconds for anything.
class Peer {
public:
    explicit Peer(int port);
    void send(const std::string& bytes);
    /// Exactly `count` bytes, fewer when the other side closed.
    std::string read(int count);
    std::string readAll() { return read(1 << 24); }
    void leave() { socket_ = host::Descriptor(); }

private:
    host::Descriptor socket_;
};

/// The plainest VNC client there is: RFC 6143, raw encoding, the server's own pixels.
class VncPeer : public Peer {
public:
    /// Connects and, with a password if one is asked for, comes as far as to see the panel.
    explicit VncPeer(int port, const std::string& password = {});

    /// False when the password was refused.
    [[nodiscard]] bool admitted() const { return admitted_; }

    void request(bool incremental, host::Rect area);
    /// Reads one update into the picture; the rectangles it had.
    std::vector<host::Rect> readUpdate();
    /// Asks for the whole panel and reads it.
    const std::string& readPicture();

    void pointer(int buttons, host::Point at);

private:
    /// Reads a number of so many bytes.
    int number(int bytes);

    bool admitted_ = false;
    host::Size size_{};
    std::string picture_;
};
