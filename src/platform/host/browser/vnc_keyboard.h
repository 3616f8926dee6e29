#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/host/panel/display.h"

namespace host {

/// The text that an X11 keysym stands for, in UTF-8; empty when it is no character. Newer clients send Unicode
/// keysyms, many others those of the old national sets.
[[nodiscard]] std::string keysymText(std::uint32_t keysym);

/// One client's keyboard and clipboard: makes text and keys of its key events. Owned by its VncClient.
class VncKeyboard {
public:
    /// What a key event means; nothing for modifiers, releases and keys that are not for typing.
    [[nodiscard]] std::optional<Input> key(std::uint32_t keysym, bool down);

    /// The client's clipboard, Latin-1; Control+V types it. A client sends it whenever it changes, which is no
    /// wish to type it yet.
    void setClipboard(const std::string& latin1);

private:
    bool shift_ = false;
    bool control_ = false;
    bool alt_ = false;
    std::string clipboard_;
};

}  // namespace host
