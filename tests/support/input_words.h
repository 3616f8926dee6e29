#pragma once

#include <string>

#include "platform/host/panel/display.h"

/// An input as tests read it: "down 3,4", "move 3,4", "up 3,4", "key 0", "text a" or "close".
inline std::string inWords(const host::Input& input) {
    using Kind = host::Input::Kind;
    if (input.kind == Kind::Close) return "close";
    if (input.kind == Kind::Text) return "text " + input.text;
    if (input.kind == Kind::Key) return "key " + std::to_string(static_cast<int>(input.key));
    const std::string at = std::to_string(input.at.x) + "," + std::to_string(input.at.y);
    return (input.kind == Kind::PointerDown ? "down " : input.kind == Kind::PointerMove ? "move " : "up ") + at;
}
