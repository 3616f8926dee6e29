#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "platform/host/panel/browser_display.h"
#include "platform/host/panel/headless_display.h"
#include "platform/host/panel/window_display.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

TEST(EveryDisplay, WaitsUntilItsTimeHasPassedOrAWakeComes) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    BrowserSettings browser;
    browser.page = COLOUR_SOURCE_DIR "/theme/browser";
    std::string error;
    std::unique_ptr<Display> displays[] = {openHeadless(), openWindow({30, 40}, PixelFormat::Grey8, "Test", error),
                                           openBrowser(browser, {30, 40}, PixelFormat::Grey8, error)};
    for (const auto& display : displays) {
        ASSERT_NE(display, nullptr) << error;
        const auto begin = steady_clock::now();
        EXPECT_FALSE(display->wait(milliseconds{30}));
        EXPECT_GE(steady_clock::now() - begin, milliseconds{29});
        display->wake();
        EXPECT_FALSE(display->wait(std::nullopt)) << "a wake before the wait ends it as well";
        std::thread other([&display] {
            std::this_thread::sleep_for(milliseconds{20});
            display->wake();
        });
        EXPECT_FALSE(display->wait(std::nullopt));
        other.join();
    }
}

}  // namespace
}  // namespace host
