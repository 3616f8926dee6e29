#include "platform/host/dialogs/message_dialog.h"

#include <gtest/gtest.h>

#include "platform/host/touch/pointer_event.h"
#include "support/test_desk.h"

namespace host {
namespace {

std::unique_ptr<Modal> ask(const TestDesk& test, const std::string& question) {
    return makeMessageDialog(test.desk, {"@Delete", question, "@Cancel", "@Delete"}, [](int) {});
}

TEST(MessageDialog, AnswersWithTheButtonPressedAndLifted) {
    TestDesk test;
    const auto dialog = ask(test, "@AreYouSureYouWantToDeleteThisFile");
    const Rect area = dialog->area();
    // In the middle of a button's width, as high as a finger lands above the panel's edge (12 mm).
    const int y = static_cast<int>(area.bottom()) - test.device.designToPixel(140);
    const auto send = [&](int type, int button) { dialog->pointer(type, {area.x + area.w * (2 * button - 1) / 4, y}); };
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
    EXPECT_GE(test.display.areas[0].h * 25.4, 12.0 * test.device.dpi);
    send(kPointerUp, 2);
    EXPECT_EQ(dialog->takeCallback().value().entry, "dialog 2");
}

TEST(MessageDialog, IsSeenToItsLastWordOnTheSmallestPanels) {
    for (const Device& device : {Device{480, 320, 120, 1.5, false}, Device{480, 320, 120, 2.0, false},
                                 Device{800, 600, 167, 2.0, false}, Device{1404, 1872, 300, 2.0, true}}) {
        TestDesk test(device);
        const auto painted = [&test](const std::string& what) {
            ask(test, "Are you sure you want to delete this " + what)->paint();
            return test.screen.pixels();
        };
        EXPECT_FALSE(painted("file?") == painted("lily?")) << device.width << ' ' << device.scale;
    }
}

}  // namespace
}  // namespace host
