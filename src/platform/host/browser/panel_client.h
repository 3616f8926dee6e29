#pragma once

#include <array>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "platform/host/browser/messages.h"
#include "platform/host/panel/drawing.h"
#include "platform/host/screen/damage.h"

namespace host {

/// What all clients share: the panel and what is done on it. Owned by the display, outlives its clients.
struct Stage {
    Size size;
    PixelFormat format;
    const Framebuffer* shown = nullptr;  ///< borrowed; null before anything has been shown
    std::optional<Rect> typing{};        ///< where text appears, while it is taken
    std::optional<WetTip> wet{};         ///< while there is wet ink
    std::deque<Input> inputs{};          ///< not fetched yet
    Drawing drawing{inputs};
};

/// One page that shows the panel, on its WebSocket. Never waits: one message is on its way at a time, and what
/// changes meanwhile is sent as it is then. Operations in progress keep it alive.
class PanelClient : public std::enable_shared_from_this<PanelClient> {
public:
    using Request = boost::beast::http::request<boost::beast::http::string_body>;

    /// `patience` is for the client to take anything.
    PanelClient(boost::asio::ip::tcp::socket socket, Stage& stage, std::chrono::milliseconds patience);

    /// Answers the request that asked for the WebSocket.
    void accept(const Request& request);

    /// The panel shows something else there.
    void changed(Rect area);

    /// Listens on, and sends what is due, as far as the client has taken what came before.
    void proceed();

    [[nodiscard]] bool closed() const { return phase_ == Phase::Closed; }

private:
    enum class Phase { Opening, Open, Closed };

    void listen();
    void hear();
    void send();
    [[nodiscard]] std::optional<std::string> nextMessage();
    /// The next part of the panel to send; empty when there is none.
    [[nodiscard]] Rect nextBand(int bytesPerPixel);
    /// Drops the client when it has taken nothing since the last time.
    void watch();
    void leave();

    boost::beast::websocket::stream<boost::asio::ip::tcp::socket> socket_;
    Stage& stage_;
    std::chrono::milliseconds patience_;
    Phase phase_ = Phase::Opening;
    int id_;
    /// Of the message that is coming, which the library inflates right only where all of it has room.
    std::array<char, kLargestMessage + 1> heard_;
    std::size_t heardBytes_ = 0;
    bool listening_ = false;
    std::string message_;  ///< on its way
    bool sending_ = false;
    bool toldPanel_ = false;
    bool refused_ = false;  ///< a press has been ignored because another client draws
    bool toldRefused_ = false;
    std::optional<Rect> toldTyping_;
    std::optional<WetTip> toldWet_;
    bool pixelsSent_ = false;  ///< while wet ink waited
    Damage unsent_;
    Rect next_;  ///< being sent, from the top; the newest first, so that ink does not wait for a page on its way
    bool more_ = false;  ///< there may be more that is unsent than that
    boost::asio::steady_timer watch_;
    long sent_ = 0;                 ///< messages
    std::pair<long, int> taken_{};  ///< messages sent and bytes waiting, when last looked at
    int idle_ = 0;
};

}  // namespace host
