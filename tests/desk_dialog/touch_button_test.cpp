#include "platform/host/desk/touch_button.h"

#include <gtest/gtest.h>

#include "platform/host/desk/pointer_event.h"
#include "support/test_desk.h"

namespace host {
namespace {

constexpr Rect kBox{100, 200, 150, 90};
constexpr Point kInside{110, 210};
constexpr Point kFirstPixel{100, 200};
constexpr Point kLastPixel{249, 289};
constexpr Point kBeside{250, 240};

class TouchButtonTest : public testing::Test {
protected:
    TouchButtonTest() { button.paint(test.desk); }

    bool send(int type, Point at) { return button.pointer(test.desk, type, at); }
    [[nodiscard]] bool looksPressed() const { return *test.screen.pixels().at(kBox.x + kBox.w / 2, kBox.y + 10) == 0; }

    TestDesk test{smallGreyPanel()};
    TouchButton button{kBox, {.label = "OK", .font = {test.text.defaultFamily(0), 24}}};
};

TEST_F(TouchButtonTest, ActsOnceWhenLiftedInside) {
    EXPECT_FALSE(send(kPointerDown, kFirstPixel));
    EXPECT_TRUE(looksPressed());
    EXPECT_FALSE(send(kPointerMove, kLastPixel));
    EXPECT_TRUE(send(kPointerUp, kLastPixel));
    EXPECT_FALSE(looksPressed());
    EXPECT_FALSE(send(kPointerUp, kLastPixel));
}

TEST_F(TouchButtonTest, LetsGoWhenThePointerLeaves) {
    for (const int type : {kPointerMove, kPointerReport}) {
        EXPECT_FALSE(send(kPointerDown, kInside));
        EXPECT_FALSE(send(type, kBeside));
        EXPECT_FALSE(looksPressed());
        EXPECT_FALSE(send(type, kInside));
        EXPECT_FALSE(send(kPointerUp, kInside));
    }
}

TEST_F(TouchButtonTest, IgnoresAPressThatBeganElsewhere) {
    EXPECT_FALSE(send(kPointerUp, kInside));
    EXPECT_FALSE(send(kPointerDown, kBeside));
    EXPECT_FALSE(send(kPointerMove, kInside));
    EXPECT_FALSE(send(kPointerUp, kInside));
    EXPECT_TRUE(test.display.areas.empty());
}

TEST_F(TouchButtonTest, RefreshesItsBoxOnlyWhenItsLookChanges) {
    EXPECT_FALSE(send(kPointerDown, kInside));
    EXPECT_FALSE(send(kPointerMove, kLastPixel));
    EXPECT_TRUE(send(kPointerUp, kLastPixel));
    EXPECT_EQ(test.display.areas, (std::vector<Rect>{kBox, kBox}));
}

}  // namespace
}  // namespace host
