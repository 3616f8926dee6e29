#include "browser/display_host.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

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
    thread_ = std::jthread([this](const std::stop_token& stop) { loop(stop); });
}

DisplayHost::~DisplayHost() {
    thread_.request_stop();
    display_->wake();
}

void DisplayHost::loop(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        const std::optional<host::Input> input = display_->wait(std::nullopt);
        const std::scoped_lock lock(mutex_);
        if (input) inputs_.push_back(inWords(*input));
        for (; !tasks_.empty(); tasks_.pop_front()) tasks_.front()();
    }
}

void DisplayHost::run(const std::function<void(host::Display&, host::Framebuffer&)>& task) {
    std::packaged_task<void()> packaged([&] { task(*display_, shown_); });
    std::future<void> done = packaged.get_future();
    {
        const std::scoped_lock lock(mutex_);
        tasks_.push_back(std::move(packaged));
    }
    display_->wake();
    done.get();
}

void DisplayHost::presentNoise(host::Rect area) {
    run([area](host::Display& display, host::Framebuffer& shown) {
        static std::mt19937 random(7);
        for (int y = area.y; y < area.bottom(); ++y) {
            std::uint8_t* row = shown.at(area.x, y);
            for (int i = 0; i < area.w * shown.bytesPerPixel(); ++i) row[i] = static_cast<std::uint8_t>(random());
        }
        display.present(shown, area);
    });
}

std::string DisplayHost::input(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        {
            const std::scoped_lock lock(mutex_);
            if (!inputs_.empty()) {
                const std::string first = inputs_.front();
                inputs_.pop_front();
                return first;
            }
        }
        if (std::chrono::steady_clock::now() > end) return "nothing";
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

std::string DisplayHost::picture() {
    std::string pixels;
    for (int y = 0; y < shown_.size().h; ++y) {
        for (int x = 0; x < shown_.size().w; ++x) {
            const auto* pixel = reinterpret_cast<const char*>(shown_.at(x, y));
            const int step = shown_.bytesPerPixel() / 3;
            pixels += {pixel[0], pixel[step], pixel[2 * step], '\0'};
        }
    }
    return pixels;
}
