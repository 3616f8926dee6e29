#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/host/browser/browser_socket.h"
#include "platform/host/browser/vnc_keyboard.h"
#include "platform/host/browser/vnc_messages.h"
#include "platform/host/browser/vnc_screen.h"

namespace host {

/// One VNC client: its bytes in, bytes for it out, with no network in between.
///
/// The protocol library reads and writes its socket until a message is through and waits for slow clients
/// meanwhile. It is therefore given one end of a socket pair: whole, vetted messages go in, and what comes out always
/// fits in, because large updates are sent in slices. So no client can make it wait.
class VncClient {
public:
    explicit VncClient(VncScreen& screen);
    VncClient(const VncClient&) = delete;
    VncClient& operator=(const VncClient&) = delete;
    ~VncClient();

    /// Takes bytes from the client, in pieces of any size.
    void receive(std::string_view bytes);

    /// Adds to the output what is due and asked for, until it holds `enough` bytes.
    void update(std::size_t enough);

    /// Bytes for the client since the last call.
    [[nodiscard]] std::string takeOutput();

    /// True once the client is to be dropped, after its output has been sent.
    [[nodiscard]] bool ended() const { return ended_; }
    /// True once the client sees the panel: password and handshake are done.
    [[nodiscard]] bool admitted() const { return stage() == VncStage::Normal; }

private:
    [[nodiscard]] VncStage stage() const;
    [[nodiscard]] std::size_t take(std::string_view bytes);
    void deliver(std::string_view message);
    [[nodiscard]] bool connect(std::string_view version);
    void collect();

    VncScreen& screen_;
    VncKeyboard keyboard_;
    Descriptor link_;               ///< our end of the pair
    _rfbClientRec* rfb_ = nullptr;  ///< the library's record, with its end
    int sliceRows_ = 1;
    std::string received_;  ///< the beginning of a message
    std::size_t skip_ = 0;  ///< bytes still to pass over
    std::string output_;
    bool ended_ = false;
};

}  // namespace host
