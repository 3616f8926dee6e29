#pragma once

#include <string>

namespace host {

/// Owner of a file descriptor.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(Descriptor&& other) noexcept : fd_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor();

    [[nodiscard]] int get() const { return fd_; }
    [[nodiscard]] int release();
    explicit operator bool() const { return fd_ >= 0; }

private:
    int fd_ = -1;
};

/// A socket that listens on a numeric address, and the address as a URL's host has it.
struct Listener {
    Descriptor socket;
    std::string host;
    int port = 0;
};

/// Listens on `address` (empty: 127.0.0.1) and `port`; 0 means 6080 or the next port that is free. On failure the
/// socket is empty and `error` says why.
[[nodiscard]] Listener listenOn(const std::string& address, int port, std::string& error);

/// The next connection, never waiting; empty when there is none.
[[nodiscard]] Descriptor acceptFrom(const Listener& listener);

}  // namespace host
