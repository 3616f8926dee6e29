#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "platform/host/browser/browser_display.h"

/// With the page of the source tree.
host::BrowserSettings browserSettings();

/// A browser display that runs as in the program, on a thread of its own; its inputs are kept for the test.
class DisplayHost {
public:
    explicit DisplayHost(host::Size size, host::PixelFormat format = host::PixelFormat::Rgb24,
                         const host::BrowserSettings& settings = browserSettings());
    ~DisplayHost();

    /// Runs `task` between two waits of the display, and returns when it is done.
    void run(const std::function<void(host::Display&, host::Framebuffer&)>& task);
    /// Fills the area with noise and presents it.
    void presentNoise(host::Rect area);

    /// The next input in words; "nothing" when none comes in time.
    std::string input(std::chrono::milliseconds limit = std::chrono::seconds(30));

    [[nodiscard]] const host::Framebuffer& picture() const { return shown_; }

    std::string address;  ///< as printed
    int port = 0;

private:
    std::unique_ptr<host::Display> display_;
    host::Framebuffer shown_;
    std::mutex mutex_;
    std::condition_variable changed_;  ///< after each wait
    const std::function<void(host::Display&, host::Framebuffer&)>* task_ = nullptr;
    std::deque<std::string> inputs_;
    std::jthread thread_;
};
