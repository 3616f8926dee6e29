#include <gtest/gtest.h>

#include <thread>

#include "platform/host/panel/headless_display.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

TEST(Headless, WaitEndsWithItsTimeOrByAWake) {
    const std::unique_ptr<Display> display = openHeadless();
    const auto begin = steady_clock::now();
    EXPECT_FALSE(display->wait(milliseconds{30}));
    EXPECT_GE(steady_clock::now() - begin, milliseconds{30});

    display->wake();
    EXPECT_FALSE(display->wait(std::nullopt)) << "a wake before the wait ends it as well";

    std::thread other([&display] {
        std::this_thread::sleep_for(milliseconds{20});
        display->wake();
    });
    EXPECT_FALSE(display->wait(std::nullopt));
    other.join();
}

}  // namespace
}  // namespace host
