#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/host/panel/drawing.h"

namespace host {

// What the page and the program say to each other: docs/browser-protocol.md.

struct PointerMessage : PointerAct {
    std::vector<Point> path;  ///< oldest first, at least one; on the panel
};

/// From where on the page shows wet ink: the end of the last piece that has been drawn, and its look.
struct WetTip {
    Point end;
    Rgb colour;  ///< as the panel shows it
    int width;   ///< pixels

    bool operator==(const WetTip&) const = default;
};

/// A pointer's message, or a key or text.
using Message = std::variant<PointerMessage, Input>;

/// More than any message needs: a thousand samples, or the longest text.
inline constexpr std::size_t kLargestMessage = 8192;

/// Nothing when the page must not say that.
[[nodiscard]] std::optional<Message> readMessage(std::string_view bytes, Size panel);

[[nodiscard]] std::string panelMessage(Size panel, PixelFormat format);
/// `area` lies inside `shown`.
[[nodiscard]] std::string pixelsMessage(const Framebuffer& shown, Rect area);
[[nodiscard]] std::string noticeMessage(bool anotherDraws);
/// Nothing: there is no wet ink any more.
[[nodiscard]] std::string wetInkMessage(std::optional<WetTip> tip);
/// Where text appears; nothing: it does not.
[[nodiscard]] std::string typingMessage(std::optional<Rect> near);

}  // namespace host
