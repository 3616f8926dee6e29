#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

/// The answer to a client's Sec-WebSocket-Key (RFC 6455, 4.2.2).
[[nodiscard]] std::string webSocketAccept(const std::string& key);

/// One binary frame around `payload`, as a server sends it.
[[nodiscard]] std::string webSocketFrame(std::string_view payload);

/// Takes a browser's stream of frames apart.
class WebSocketReader {
public:
    struct Result {
        std::string payload;  ///< of binary frames
        std::string reply;    ///< pongs due, framed
        bool closed = false;  ///< the browser closed, or sent what no browser sends
    };

    /// Takes bytes in pieces of any size.
    [[nodiscard]] Result read(std::string_view bytes);

private:
    void readHeader(char byte, Result& result);
    void beginFrame(Result& result);
    [[nodiscard]] std::string unmasked(std::string_view bytes);
    void readPayload(std::string_view bytes, Result& result);

    std::string header_;           ///< of the frame being read, up to its mask
    std::uint64_t remaining_ = 0;  ///< payload bytes still to come
    std::size_t maskAt_ = 0;
    std::string ping_;
};

}  // namespace host
