#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/host/panel/display.h"

namespace host {

struct BrowserSettings {
    int port = 0;                ///< 0: 6080, or the next one that is free
    std::string listen;          ///< numeric address to listen on; empty: loopback
    std::string passwordFile;    ///< its first line is the password; needed with `listen`
    std::filesystem::path page;  ///< directory of the page: index.html and what it loads
    /// For a client to take anything, or to finish its request, before it is dropped.
    std::chrono::milliseconds patience = std::chrono::seconds(10);
};

/// Shows the panel on a local web page and to any VNC client, all on one port, and prints the page's address on
/// standard output. Runs without a thread of its own: the network is served inside wait.
///
/// Other web pages open in the same browser cannot reach it: the request must name this machine by a number,
/// "localhost" or its own name, and the page's connection must come from the page itself (same origin).
///
/// Null, and the reason in `error`, when it cannot be opened: port taken, no such address, `listen` without a
/// password, unreadable password file, page or noVNC missing.
[[nodiscard]] std::unique_ptr<Display> openBrowser(const BrowserSettings& settings, Size panel, PixelFormat format,
                                                   std::string& error);

}  // namespace host
