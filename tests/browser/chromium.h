#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/bitmap_record.h"
#include "support/process.h"
#include "support/temporary_folder.h"

/// Debian's chromium without a screen, driven over the DevTools protocol on a pair of pipes.
class Chromium {
public:
    static bool installed();

    Chromium();

    struct Window {
        host::Size size;
        double ratio = 1;  ///< device pixels to a CSS pixel
        bool isPhone = false;
    };
    /// Opens a page in a tab of its own, whose window is so large.
    void open(const std::string& address, const Window& window);
    /// A command of the protocol, with parameters in JSON; its answer.
    std::string command(const std::string& method, const std::string& parameters = {});
    /// The value of a JavaScript expression that gives a string or a promise of one. Escapes are left as they are.
    std::string evaluate(const std::string& expression);
    /// `type` is mousePressed, mouseMoved or mouseReleased, `pointer` mouse or pen.
    void mouse(const std::string& type, host::Point at, const std::string& pointer = "mouse");
    /// `type` is touchStart, touchMove or touchEnd; the fingers that touch from then on.
    void touch(const std::string& type, const std::vector<host::Point>& fingers);
    /// Presses a key, which the browser names so and which types `text`.
    void strike(const std::string& key, const std::string& text = {});
    /// Puts text in as an emoji picker does, without a key.
    void insert(const std::string& text);
    /// What the window shows, in device pixels of depth 24.
    host::BitmapPtr screenshot();

private:
    TemporaryFolder profile_;
    std::optional<Process> process_;
    std::ofstream commands_;
    std::ifstream answers_;
    int count_ = 0;
    std::string session_;
};
