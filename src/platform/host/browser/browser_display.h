#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/host/panel/display.h"

namespace host {

struct BrowserSettings {
    int port = 0;                        ///< 0: 6080, or the next one that is free
    std::string listen;                  ///< numeric address to listen on; empty: loopback
    std::string passwordFile;            ///< its first line is the password; empty: a token in the address admits
    std::vector<std::string> hostNames;  ///< names beside the machine's own that requests may call it by
    std::filesystem::path page;          ///< directory of the page: index.html and what it loads
    /// For a client to take anything, or to finish its request, before it is dropped.
    std::chrono::milliseconds patience = std::chrono::seconds(10);
};

/// Shows the panel on web pages (docs/browser-protocol.md) and prints their address on standard output; with `listen`
/// every address by which the machine is reached, on a terminal as a QR code too. Runs without a thread of its own: the
/// network is served inside wait.
///
/// Whoever has not been told the address, or the password, is not let in; nor are other web pages open in the same
/// browser.
///
/// Null, and the reason in `error`, when it cannot be opened: port taken, no such address, password file unreadable or
/// password too short, page missing.
[[nodiscard]] std::unique_ptr<Display> openBrowser(const BrowserSettings& settings, Size panel, PixelFormat format,
                                                   std::string& error);

}  // namespace host
