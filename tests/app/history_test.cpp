#include <gtest/gtest.h>

#include <random>

#include "support/app.h"

// Of the sanitizers' runtime, under which the tests run.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

constexpr std::size_t kPageBytes = 1404U * 1764U * 3U;

struct History : testing::Test {
    History() { app.create(); }
    void change(int step) { app.tap(200 + 50 * (step / 30), 200 + 50 * (step % 30)); }
    void undo() { app.tap(1078, 50); }
    void redo() { app.tap(1171, 50); }

    App app;
};

}  // namespace

// Runs of each, long enough to come against both ends.
TEST_F(History, ShowsThePageThatAListOfSixHolds) {
    std::mt19937 random(5);
    std::vector<host::Framebuffer> pages = {App::screenshot()};
    auto present = pages.begin();
    auto kind = random();
    for (int step = 0; step < 100; ++step) {
        if (random() % 4 == 0) kind = random();
        if (kind % 3 == 0) {
            change(step);
            pages.erase(present + 1, pages.end());
            pages.push_back(App::screenshot());
            if (pages.size() > 6) pages.erase(pages.begin());
            present = pages.end() - 1;
        } else if (kind % 3 == 1) {
            undo();
            if (present != pages.begin()) --present;
        } else {
            redo();
            if (present + 1 != pages.end()) ++present;
        }
        ASSERT_TRUE(App::screenshot() == *present) << step;
    }
}

TEST_F(History, HoldsSevenPagesAtMost) {
    change(0);
    // The platform's own pages, on their way to the disk, are not the application's.
    App::kit().keeper.abandon();
    const std::size_t with_two_pages = __sanitizer_get_current_allocated_bytes();
    for (int step = 1; step <= 12; ++step) change(step);
    undo();
    const std::size_t full = __sanitizer_get_current_allocated_bytes();
    EXPECT_LE(full, with_two_pages + 5 * kPageBytes + kPageBytes / 2);
    EXPECT_GE(full, with_two_pages + 4 * kPageBytes);
    for (int step = 0; step < 4; ++step) undo();
    redo();
    EXPECT_LE(__sanitizer_get_current_allocated_bytes(), full + kPageBytes / 2);
}
