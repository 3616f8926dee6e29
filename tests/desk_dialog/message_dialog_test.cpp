#include "platform/host/desk/message_dialog.h"

#include <gtest/gtest.h>

#include "platform/host/desk/pointer_event.h"
#include "support/test_desk.h"

namespace host {
namespace {

int answered = 0;
void remember(int button) { answered = button; }

const Message kQuestion{"@Delete", "@AreYouSureYouWantToDeleteThisFile", "@Cancel", "@Delete"};

struct MessageDialogTest : testing::Test {
    MessageDialogTest() {
        answered = 0;
        dialog->paint();
    }

    /// In the middle of a button's width, as high as a finger lands above the panel's edge (12 mm).
    [[nodiscard]] Point buttonAt(int button) const {
        const Rect area = dialog->area();
        return {area.x + area.w / 4 + (button - 1) * area.w / 2,
                static_cast<int>(area.bottom()) - test.device.designToPixel(140)};
    }
    void send(int type, Point at) { dialog->pointer(type, at); }
    std::string callBack() {
        const auto callback = dialog->takeCallback();
        if (!callback) return "none";
        callback->run();
        return callback->entry;
    }

    TestDesk test;
    std::unique_ptr<Modal> dialog = makeMessageDialog(test.desk, kQuestion, remember);
};

TEST_F(MessageDialogTest, AnswersWithTheButtonTapped) {
    for (const int button : {1, 2}) {
        dialog = makeMessageDialog(test.desk, kQuestion, remember);
        send(kPointerDown, buttonAt(button));
        EXPECT_FALSE(dialog->closed());
        send(kPointerUp, buttonAt(button));
        ASSERT_TRUE(dialog->closed());
        EXPECT_EQ(callBack(), "dialog " + std::to_string(button));
        EXPECT_EQ(answered, button);
    }
}

TEST_F(MessageDialogTest, NeedsPressAndReleaseOnOneButton) {
    send(kPointerUp, buttonAt(2));  // the press began before the dialog opened
    send(kPointerDown, buttonAt(1));
    send(kPointerMove, buttonAt(2));
    send(kPointerUp, buttonAt(2));
    EXPECT_FALSE(dialog->closed());
}

TEST_F(MessageDialogTest, CancelAndEscapeAnswerOne) {
    dialog->cancel();
    EXPECT_EQ(callBack(), "dialog 1");
    dialog = makeMessageDialog(test.desk, kQuestion, remember);
    dialog->key(Key::Escape);
    EXPECT_EQ(callBack(), "dialog 1");
}

TEST_F(MessageDialogTest, ScriptsAnswerOnlyWithAButtonThatExists) {
    EXPECT_FALSE(dialog->answer(0));
    EXPECT_FALSE(dialog->answer(3));
    EXPECT_FALSE(dialog->type("text"));
    EXPECT_FALSE(dialog->closed());
    EXPECT_TRUE(dialog->answer(2));
    EXPECT_EQ(callBack(), "dialog 2");
}

TEST_F(MessageDialogTest, RefreshesOnlyThePressedButton) {
    send(kPointerDown, buttonAt(2));
    ASSERT_EQ(test.display.areas.size(), 1U);
    const Rect button = test.display.areas[0];
    EXPECT_TRUE(button.contains(buttonAt(2)));
    EXPECT_LT(button.w, dialog->area().w / 2);
    EXPECT_GE(button.h * 25.4, 12.0 * test.device.dpi);
}

bool anyInk(const Screen& screen, Rect area) {
    for (int y = area.y; y < area.bottom(); ++y)
        for (int x = area.x; x < area.right(); ++x)
            if (*screen.pixels().at(x, y) < 0x40) return true;
    return false;
}

TEST(MessageDialogLayout, StaysOnScreensOfAnySize) {
    const Device panels[] = {defaultPanel(),
                             smallGreyPanel(),
                             {.width = 800, .height = 600, .dpi = 167},
                             {.width = 300, .height = 200, .dpi = 300, .scale = 2.0}};
    std::string endless;
    for (int i = 0; i < 500; ++i) endless += "sentence ";
    for (const Device& panel : panels) {
        TestDesk test(panel);
        for (const std::string& text : {std::string("Short"), endless}) {
            const auto dialog = makeMessageDialog(test.desk, {"Title", text, "One", "Two"}, remember);
            dialog->paint();
            EXPECT_EQ(dialog->area().intersected(panel.bounds()), dialog->area());
        }
    }
}

TEST(MessageDialogLayout, ArabicStartsAtTheRight) {
    TestDesk test;
    const auto dialog = makeMessageDialog(test.desk, {"حذف", "هل", "إلغاء", "حذف"}, remember);
    dialog->paint();
    const Rect area = dialog->area().inset(test.device.designToPixel(40));
    const Rect leftHalf{area.x, area.y, area.w / 2, area.h / 3};
    EXPECT_FALSE(anyInk(test.screen, leftHalf));
    EXPECT_TRUE(anyInk(test.screen, {area.x + area.w / 2, area.y, area.w / 2, area.h / 3}));
}

}  // namespace
}  // namespace host
