#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "platform/host/browser/browser_http.h"
#include "platform/host/browser/browser_socket.h"
#include "platform/host/browser/browser_websocket.h"
#include "platform/host/browser/vnc_client.h"

namespace host {

using SteadyTime = std::chrono::steady_clock::time_point;

/// One connection to the browser display's port: a browser that fetches a file, our page's own connection to the
/// panel (WebSocket), or a VNC client. Which of them, its first bytes tell. Never waits: what cannot be sent is
/// kept, and a client that takes nothing gets no more until it does, or is dropped. Owned by the display, borrows
/// screen and pages from it.
class BrowserConnection {
public:
    /// `patience` is for a client to take anything, or to finish its request.
    BrowserConnection(Descriptor socket, VncScreen& screen, const BrowserPages& pages,
                      std::chrono::milliseconds patience, SteadyTime now);

    /// Reads what has come and acts on it.
    void receive(SteadyTime now);
    /// Sends what is due, as far as the client takes it.
    void send(SteadyTime now);
    /// Does what the passing of time asks for; see deadline.
    void pass(SteadyTime now);

    [[nodiscard]] int socket() const { return socket_.get(); }
    [[nodiscard]] bool wantsToSend() const { return sent_ < output_.size(); }
    /// False while the client asks for more than it takes.
    [[nodiscard]] bool wantsToReceive() const;
    /// When pass must be called at the latest, if nothing comes or goes before.
    [[nodiscard]] std::optional<SteadyTime> deadline() const { return deadline_; }
    [[nodiscard]] bool closed() const { return !socket_; }

private:
    enum class Phase { Undecided, Panel, Closing };

    void sort(std::string_view bytes, SteadyTime now);
    void answer(std::string_view head, SteadyTime now);
    void openWebSocket(const HttpRequest& request, SteadyTime now);
    void meetClient(SteadyTime now);
    void hear(std::string_view bytes, SteadyTime now);
    void say(std::string_view bytes);
    void fetchUpdates();
    void finish(SteadyTime now);
    void setDeadline(SteadyTime now);

    Descriptor socket_;
    VncScreen& screen_;
    const BrowserPages& pages_;
    std::chrono::milliseconds patience_;
    Phase phase_ = Phase::Undecided;
    std::string head_;  ///< of a request that is not whole yet
    std::optional<WebSocketReader> webSocket_;
    std::optional<VncClient> client_;
    std::string output_;
    std::size_t sent_ = 0;  ///< bytes of the output that have gone
    bool stalled_ = false;  ///< the client takes nothing at present
    std::optional<SteadyTime> deadline_;
};

}  // namespace host
