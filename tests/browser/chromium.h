#pragma once

#include <fstream>
#include <optional>
#include <string>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/bitmap_record.h"
#include "support/process.h"
#include "support/temporary_folder.h"

/// Debian's chromium without a screen, driven over the DevTools protocol on a pair of pipes.
class Chromium {
public:
    static bool installed();

    Chromium();

    /// Opens a page in a window of that size.
    void open(const std::string& address, host::Size window);
    /// The value of a JavaScript expression that gives a string.
    std::string evaluate(const std::string& expression);
    /// `type` is mousePressed, mouseMoved or mouseReleased.
    void mouse(const std::string& type, host::Point at);
    /// Presses a key whose name is `key`, as the browser names it.
    void strike(const std::string& key);
    /// What the window shows, of depth 24.
    host::BitmapPtr screenshot();

private:
    /// Sends a command with parameters in JSON; its answer.
    std::string command(const std::string& method, const std::string& parameters);

    TemporaryFolder profile_;
    std::optional<Process> process_;
    std::ofstream commands_;
    std::ifstream answers_;
    int count_ = 0;
    std::string session_;
};
