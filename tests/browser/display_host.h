#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <random>
#include <stdexcept>
#include <thread>

#include "platform/host/browser/browser_display.h"
#include "support/input_words.h"

/// With the page of the source tree.
inline host::BrowserSettings browserSettings(std::chrono::seconds patience = std::chrono::seconds(10)) {
    host::BrowserSettings settings;
    settings.page = COLOUR_SOURCE_DIR "/theme/browser";
    settings.patience = patience;
    return settings;
}

/// A browser display that runs as in the program, on a thread of its own; its inputs are kept for the test.
class DisplayHost {
public:
    explicit DisplayHost(host::Size size, host::PixelFormat format = host::PixelFormat::Rgb24,
                         const host::BrowserSettings& settings = browserSettings())
        : picture(size, format) {
        std::string error;
        testing::internal::CaptureStdout();
        display_ = host::openBrowser(settings, size, format, error);
        address = testing::internal::GetCapturedStdout();
        if (!display_) throw std::runtime_error(error);
        address.pop_back();  // the end of the line
        port = std::stoi(address.substr(address.rfind(':') + 1));
        thread_ = std::jthread([this](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                const std::optional<host::Input> input = display_->wait(std::nullopt);
                const std::scoped_lock lock(mutex_);
                if (input) inputs_.push_back(inWords(*input));
                if (task_ != nullptr) (*std::exchange(task_, nullptr))(*display_);
                changed_.notify_all();
            }
        });
    }
    ~DisplayHost() {
        thread_.request_stop();
        display_->wake();
    }

    /// Runs `task` between two waits of the display, and returns when it is done.
    void run(const std::function<void(host::Display&)>& task) {
        std::unique_lock lock(mutex_);
        task_ = &task;
        display_->wake();
        changed_.wait(lock, [this] { return task_ == nullptr; });
    }

    /// Fills the area with noise and presents it.
    void presentNoise(host::Rect area) {
        run([&](host::Display& display) {
            static std::mt19937 random(7);
            for (int y = area.y; y < area.bottom(); ++y)
                std::generate_n(picture.at(area.x, y), area.w * picture.bytesPerPixel(), std::ref(random));
            display.present(picture, area);
        });
    }

    /// The next input in words; "nothing" when none comes in half a minute.
    std::string input() {
        std::unique_lock lock(mutex_);
        if (!changed_.wait_for(lock, std::chrono::seconds(30), [this] { return !inputs_.empty(); })) return "nothing";
        const std::string first = inputs_.front();
        inputs_.pop_front();
        return first;
    }

    host::Framebuffer picture;  ///< changed only in a task
    std::string address;        ///< as printed
    int port = 0;

private:
    std::unique_ptr<host::Display> display_;
    std::mutex mutex_;
    std::condition_variable changed_;  ///< after each wait
    const std::function<void(host::Display&)>* task_ = nullptr;
    std::deque<std::string> inputs_;
    std::jthread thread_;
};
