#include "browser/display_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <utility>

#include "support/input_words.h"

host::BrowserSettings browserSettings() {
    host::BrowserSettings settings;
    settings.page = COLOUR_SOURCE_DIR "/theme/browser";
    return settings;
}

DisplayHost::DisplayHost(host::Size size, host::PixelFormat format, const host::BrowserSettings& settings)
    : shown_(size, format) {
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
            if (task_ != nullptr) (*std::exchange(task_, nullptr))(*display_, shown_);
            changed_.notify_all();
        }
    });
}

DisplayHost::~DisplayHost() {
    thread_.request_stop();
    display_->wake();
}

void DisplayHost::run(const std::function<void(host::Display&, host::Framebuffer&)>& task) {
    std::unique_lock lock(mutex_);
    task_ = &task;
    display_->wake();
    changed_.wait(lock, [this] { return task_ == nullptr; });
}

void DisplayHost::presentNoise(host::Rect area) {
    run([area](host::Display& display, host::Framebuffer& shown) {
        static std::mt19937 random(7);
        for (int y = area.y; y < area.bottom(); ++y)
            std::generate_n(shown.at(area.x, y), area.w * shown.bytesPerPixel(), std::ref(random));
        display.present(shown, area);
    });
}

std::string DisplayHost::input(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, limit, [this] { return !inputs_.empty(); })) return "nothing";
    std::string first = std::move(inputs_.front());
    inputs_.pop_front();
    return first;
}
