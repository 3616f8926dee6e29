#include <gtest/gtest.h>

#include <random>

#include "support/app.h"

// Of the sanitizers' runtime, under which the tests run.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

constexpr std::size_t kPageBytes = 1404U * 1764U * 3U;

class History : public testing::Test {
protected:
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
    int step = 0;
    for (int run = 0; run < 25; ++run) {
        const auto kind = random() % 3;
        for (auto rest = 1 + random() % 7; rest > 0; --rest) {
            if (kind == 0) {
                change(++step);
                pages.erase(present + 1, pages.end());
                pages.push_back(App::screenshot());
                if (pages.size() > 6) pages.erase(pages.begin());
                present = pages.end() - 1;
            } else if (kind == 1) {
                undo();
                if (present != pages.begin()) --present;
            } else {
                redo();
                if (present + 1 != pages.end()) ++present;
            }
            ASSERT_TRUE(App::screenshot() == *present) << run;
        }
    }
}

TEST_F(History, StartsAnewWithEachPicture) {
    change(1);
    app.tap(58, 50);
    app.open("/mnt/ext1/My pictures/picture_1700000000.bmp");
    const host::Framebuffer loaded = App::screenshot();
    undo();
    EXPECT_TRUE(App::screenshot() == loaded);
}

TEST_F(History, HoldsSevenPagesAtMost) {
    change(0);
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
