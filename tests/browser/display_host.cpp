#include "browser/display_host.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

using namespace std::chrono_literals;

DisplayHost::DisplayHost(host::Size size, host::PixelFormat format, host::BrowserSettings settings)
    : shown_(size, format) {
    settings.page = COLOUR_SOURCE_DIR "/theme/browser";
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
        std::optional<host::Input> input = display_->wait(std::nullopt);
        const std::scoped_lock lock(mutex_);
        if (input) inputs_.push_back(std::move(*input));
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

std::optional<host::Input> DisplayHost::input(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < end) {
        {
            const std::scoped_lock lock(mutex_);
            if (!inputs_.empty()) {
                host::Input first = inputs_.front();
                inputs_.pop_front();
                return first;
            }
        }
        std::this_thread::sleep_for(2ms);
    }
    return {};
}

std::string DisplayHost::picture() {
    std::string pixels;
    const auto channel = [](const std::uint8_t* pixel, int index) { return static_cast<char>(pixel[index]); };
    for (int y = 0; y < shown_.size().h; ++y) {
        for (int x = 0; x < shown_.size().w; ++x) {
            const std::uint8_t* pixel = shown_.at(x, y);
            const int step = shown_.bytesPerPixel() / 3;
            pixels += {channel(pixel, 0), channel(pixel, step), channel(pixel, 2 * step), '\0'};
        }
    }
    return pixels;
}
