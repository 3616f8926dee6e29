#include <gtest/gtest.h>

#include "support/app.h"

// Of the sanitizers' runtime, under which the tests run.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

constexpr std::size_t kPageBytes = 1404U * 1764U * 3U;

class History : public testing::Test {
protected:
    History() { app.create(); }

    void change(int step) { app.tap(200, 200 + 50 * step); }
    void undo() { app.tap(1078, 50); }
    void redo() { app.tap(1171, 50); }

    App app;
};

}  // namespace

TEST_F(History, StepsBackToEachOfFivePagesAndForwardAgain) {
    std::vector<host::Framebuffer> pages = {App::screenshot()};
    for (int step = 1; step <= 5; ++step) {
        change(step);
        pages.push_back(App::screenshot());
    }
    for (std::size_t page = 5; page-- > 0;) {
        undo();
        EXPECT_TRUE(App::screenshot() == pages[page]) << page;
    }
    for (std::size_t page = 1; page <= 5; ++page) {
        redo();
        EXPECT_TRUE(App::screenshot() == pages[page]) << page;
    }
}

TEST_F(History, LosesUndonePagesWithTheNextChange) {
    change(1);
    const host::Framebuffer first = App::screenshot();
    change(2);
    undo();
    change(3);
    const host::Framebuffer third = App::screenshot();
    redo();
    EXPECT_TRUE(App::screenshot() == third);
    undo();
    EXPECT_TRUE(App::screenshot() == first);
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
