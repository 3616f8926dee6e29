#include "platform/host/panel/headless_display.h"

#include <condition_variable>
#include <mutex>

namespace host {

namespace {

class HeadlessDisplay final : public Display {
public:
    void present(const Framebuffer& /*shown*/, Rect /*area*/) override {}

    std::optional<Input> wait(std::optional<std::chrono::milliseconds> timeout) override {
        std::unique_lock lock(mutex_);
        const auto awoken = [this] { return wake_; };
        if (timeout) {
            awoken_.wait_for(lock, *timeout, awoken);
        } else {
            awoken_.wait(lock, awoken);
        }
        wake_ = false;
        return std::nullopt;
    }

    void wake() override {
        const std::lock_guard lock(mutex_);
        wake_ = true;
        awoken_.notify_one();
    }

private:
    std::mutex mutex_;
    std::condition_variable awoken_;
    bool wake_ = false;
};

}  // namespace

std::unique_ptr<Display> openHeadless() { return std::make_unique<HeadlessDisplay>(); }

}  // namespace host
