#include "platform/host/dialogs/message_dialog.h"

#include <gtest/gtest.h>

#include "platform/host/touch/pointer_event.h"
#include "support/test_desk.h"

namespace host {
namespace {

int answered = 0;
void remember(int button) { answered = button; }

struct MessageDialogTest : testing::Test {
    MessageDialogTest() {
        dialog->paint();
        test.display.areas.clear();
    }

    /// In the middle of a button's width, as high as a finger lands above the panel's edge (12 mm).
    void send(int type, int button) {
        const Rect area = dialog->area();
        at = {area.x + area.w / 4 + (button - 1) * area.w / 2,
              static_cast<int>(area.bottom()) - test.device.designToPixel(140)};
        dialog->pointer(type, at);
    }
    std::string callBack() {
        const auto callback = dialog->closed() ? dialog->takeCallback() : std::nullopt;
        if (!callback) return "none";
        callback->run();
        EXPECT_EQ(callback->entry, "dialog " + std::to_string(answered));
        return callback->entry;
    }

    TestDesk test;
    std::unique_ptr<Modal> dialog =
        makeMessageDialog(test.desk, {"@Delete", "@AreYouSureYouWantToDeleteThisFile", "@Cancel", "@Delete"}, remember);
    Point at;
};

TEST_F(MessageDialogTest, AnswersWithTheButtonPressedAndLifted) {
    send(kPointerUp, 2);  // the press began before the dialog opened
    send(kPointerMove, 2);
    EXPECT_TRUE(test.display.areas.empty());
    for (const int type : {kPointerMove, kPointerReport}) {
        send(kPointerDown, 1);
        send(type, 2);
        send(type, 1);
        send(kPointerUp, 1);
        EXPECT_FALSE(dialog->closed()) << "leaving a button lets it go";
    }
    test.display.areas.clear();
    send(kPointerDown, 2);
    send(kPointerMove, 2);
    ASSERT_EQ(test.display.areas.size(), 1U) << "refreshed only when its look changes";
    const Rect button = test.display.areas[0];
    EXPECT_TRUE(button.contains(at));
    EXPECT_LT(button.w, dialog->area().w / 2);
    EXPECT_GE(button.h * 25.4, 12.0 * test.device.dpi);
    EXPECT_EQ(*test.screen.pixels().at(button.x + button.w / 2, button.y + 10), 0) << "looks pressed";
    send(kPointerUp, 2);
    EXPECT_EQ(callBack(), "dialog 2");
}

TEST(MessageDialogText, IsSeenToItsLastWordOnTheSmallestPanels) {
    for (const Device& device : {Device{480, 320, 120, 1.5, false}, Device{480, 320, 120, 2.0, false},
                                 Device{800, 600, 167, 2.0, false}, Device{1404, 1872, 300, 2.0, true}}) {
        TestDesk test(device);
        const auto painted = [&test](const std::string& text) {
            makeMessageDialog(test.desk, {"Delete", text, "Cancel", "Delete"}, remember)->paint();
            return test.screen.pixels();
        };
        const std::string question = "Are you sure you want to delete this ";
        EXPECT_FALSE(painted(question + "file?") == painted(question + "lily?")) << device.width << ' ' << device.scale;
    }
}

}  // namespace
}  // namespace host
