#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/host/panel/display.h"

namespace host {

// What the page and the program say to each other: docs/browser-protocol.md.

struct PointerMessage {
    enum class Action : std::uint8_t { Down, Move, Up };
    enum class Kind : std::uint8_t { Mouse, Finger, Pen };
    Action action = Action::Down;
    Kind kind = Kind::Mouse;
    std::uint32_t id = 0;     ///< tells it from others of the same page
    std::vector<Point> path;  ///< oldest first, at least one; on the panel
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
/// Where text appears; nothing: it does not.
[[nodiscard]] std::string typingMessage(std::optional<Rect> near);

}  // namespace host
