#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/panel/display.h"

struct _rfbScreenInfo;  // NOLINT(bugprone-reserved-identifier): the library's own names
struct _rfbClientRec;   // NOLINT(bugprone-reserved-identifier)

namespace host {

/// The panel as VNC clients see it, 32 bits a pixel, and what they do to it. Owned by the browser display; outlives
/// its VncClients.
class VncScreen {
public:
    /// An empty password lets everyone in. VNC compares the first eight characters only.
    VncScreen(Size panel, const std::string& password);
    VncScreen(const VncScreen&) = delete;
    VncScreen& operator=(const VncScreen&) = delete;
    ~VncScreen();

    /// Copies `area` and marks it as due for every client.
    void present(const Framebuffer& shown, Rect area);

    void setTextInput(bool on) { textInput_ = on; }

    [[nodiscard]] bool hasInput() const { return !inputs_.empty(); }
    /// The oldest input not fetched yet.
    [[nodiscard]] std::optional<Input> takeInput();

    /// A client goes; when it was drawing, its press ends where it was last.
    void clientGone(const _rfbClientRec* client);

    [[nodiscard]] _rfbScreenInfo* rfb() { return rfb_; }
    [[nodiscard]] Size size() const { return size_; }

private:
    void pointer(const _rfbClientRec* client, bool pressed, Point at);
    void typed(std::optional<Input> input);

    Size size_;
    std::vector<std::uint8_t> pixels_;  ///< R, G, B and an unused byte
    std::string password_;
    std::array<char*, 2> passwords_{};
    _rfbScreenInfo* rfb_;
    const _rfbClientRec* drawing_ = nullptr;  ///< the client that holds the press
    Point last_{};
    bool textInput_ = false;
    std::deque<Input> inputs_;
};

}  // namespace host
