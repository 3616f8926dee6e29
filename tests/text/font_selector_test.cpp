#include "platform/host/desk/font_selector.h"

#include <gmock/gmock.h>

#include <array>
#include <cstring>

#include "platform/host/desk/font_selector_geometry.h"
#include "platform/host/desk/pointer_event.h"
#include "support/test_desk.h"

namespace host {
namespace {

std::vector<std::string> answer;

/// The strings are the application's to write to.
void note(char* font, char* name, char* size, char* style) {
    answer = {font, name, size, style};
    for (char* text : {font, name, size, style}) std::memset(text, 'x', std::strlen(text));
}

class FontSelectorTest : public testing::Test {
protected:
    void SetUp() override { answer.clear(); }

    void open(const std::string& font, const Device& device = defaultPanel(), int sizes = 11) {
        scene_.emplace(device);
        boxes_ = FontSelectorGeometry(device, sizes);
        selector_ = makeFontSelector(scene_->desk, {"Font", font, sizes > 0, note});
        selector_->paint();
    }

    void tap(Rect box) {
        selector_->pointer(kPointerDown, middle(box));
        selector_->pointer(kPointerUp, middle(box));
    }
    [[nodiscard]] Rect row(int number) const {
        const int height = boxes_.list.h / boxes_.rows;
        return {boxes_.list.x, boxes_.list.y + number * height, boxes_.list.w, height};
    }
    static Point middle(Rect box) { return {box.x + box.w / 2, box.y + box.h / 2}; }

    /// Closes through OK and returns the first string of the answer.
    std::string confirmed() {
        tap(boxes_.ok);
        return calledBack() ? answer.front() : "";
    }
    bool calledBack() {
        const std::optional<Callback> callback = selector_->closed() ? selector_->takeCallback() : std::nullopt;
        if (!callback) return false;
        entry_ = callback->entry;
        callback->run();
        return true;
    }

    [[nodiscard]] std::string familyAt(std::size_t index) { return scene_->text.families().at(index); }
    [[nodiscard]] int indexOf(const std::string& family) {
        const auto& families = scene_->text.families();
        return static_cast<int>(std::find(families.begin(), families.end(), family) - families.begin());
    }

    std::optional<TestDesk> scene_;
    FontSelectorGeometry boxes_{defaultPanel(), 11};
    std::unique_ptr<Modal> selector_;
    std::string entry_;
};

TEST_F(FontSelectorTest, AnswersWithThePresentChoiceAtOnce) {
    open("DejaVu Serif,36");
    EXPECT_EQ(confirmed(), "DejaVu Serif,36");
    EXPECT_THAT(answer, testing::ElementsAre("DejaVu Serif,36", "DejaVu Serif", "36", ""));
    EXPECT_EQ(entry_, "font \"DejaVu Serif,36\"");
}

TEST_F(FontSelectorTest, ChoosesTheTappedFontAndSize) {
    open("DejaVu Sans,28");
    const std::string third = familyAt(2);
    tap(row(2));
    tap(boxes_.sizeButtons[0]);
    EXPECT_EQ(confirmed(), third + ",8");
}

TEST_F(FontSelectorTest, OpensAtThePageOfThePresentFont) {
    open("Noto Serif,28");
    const int place = indexOf("Noto Serif");
    tap(row((place + 1) % boxes_.rows));
    const int page = place / boxes_.rows;
    EXPECT_EQ(confirmed(), familyAt(static_cast<std::size_t>(page * boxes_.rows + (place + 1) % boxes_.rows)) + ",28");
}

TEST_F(FontSelectorTest, PagesTurnBothWaysAndRound) {
    open("DejaVu Sans,28");
    tap(boxes_.next);
    tap(row(0));
    EXPECT_EQ(confirmed(), familyAt(static_cast<std::size_t>(boxes_.rows)) + ",28");

    open("DejaVu Sans,28");
    tap(boxes_.previous);
    tap(boxes_.next);
    tap(boxes_.previous);
    tap(row(0));
    const std::size_t families = scene_->text.families().size();
    const auto rows = static_cast<std::size_t>(boxes_.rows);
    EXPECT_EQ(confirmed(), familyAt((families - 1) / rows * rows) + ",28");
}

TEST_F(FontSelectorTest, EmptyRowsOfTheLastPageChooseNothing) {
    open("DejaVu Sans,28");
    const int families = static_cast<int>(scene_->text.families().size());
    if (families % boxes_.rows == 0) GTEST_SKIP() << "the last page is full on this machine";
    tap(boxes_.previous);
    tap(row(boxes_.rows - 1));
    EXPECT_EQ(confirmed(), "DejaVu Sans,28");
}

TEST_F(FontSelectorTest, OffersAnUnusualSizeToo) {
    open("DejaVu Sans,33", defaultPanel(), 12);
    tap(boxes_.sizeButtons[0]);
    tap(boxes_.sizeButtons[7]);
    EXPECT_EQ(confirmed(), "DejaVu Sans,33");
}

TEST_F(FontSelectorTest, StartsWithTheDefaultFontWhereNoneIsGiven) {
    for (const char* font : {",0", "", "No Such Font", "No Such Font,-5", "DejaVu Sans,abc"}) {
        open(font);
        EXPECT_EQ(confirmed(), std::string(scene_->text.defaultFamily(0)) + ",28") << font;
    }
}

TEST_F(FontSelectorTest, CancelDoesNotCallBack) {
    open("DejaVu Sans,28");
    tap(boxes_.cancel);
    EXPECT_TRUE(selector_->closed());
    EXPECT_FALSE(calledBack());

    open("DejaVu Sans,28");
    selector_->key(Key::Escape);
    EXPECT_TRUE(selector_->closed());
    EXPECT_FALSE(calledBack());
}

TEST_F(FontSelectorTest, TakesAnyAnswerFromAScript) {
    open("DejaVu Sans,28");
    EXPECT_TRUE(selector_->chooseFont("Odd \"Font\",7,8"));
    ASSERT_TRUE(calledBack());
    EXPECT_THAT(answer, testing::ElementsAre("Odd \"Font\",7,8", "Odd \"Font\"", "7,8", ""));
    EXPECT_EQ(entry_, "font \"Odd \\\"Font\\\",7,8\"");

    open("DejaVu Sans,28");
    EXPECT_TRUE(selector_->chooseFont("no comma"));
    ASSERT_TRUE(calledBack());
    EXPECT_THAT(answer, testing::ElementsAre("no comma", "no comma", "", ""));
    EXPECT_FALSE(selector_->answer(1));
    EXPECT_FALSE(selector_->type("x"));
}

TEST_F(FontSelectorTest, ActsOnlyOnAPressThatBeganAndEndedInOnePlace) {
    open("DejaVu Sans,28");
    selector_->pointer(kPointerUp, middle(boxes_.ok));
    selector_->pointer(kPointerUp, middle(row(2)));
    EXPECT_FALSE(selector_->closed());
    selector_->pointer(kPointerDown, middle(row(2)));
    selector_->pointer(kPointerMove, middle(row(3)));
    selector_->pointer(kPointerUp, middle(row(3)));
    selector_->pointer(kPointerDown, middle(boxes_.cancel));
    selector_->pointer(kPointerUp, middle(boxes_.ok));
    EXPECT_FALSE(selector_->closed());
    EXPECT_EQ(confirmed(), "DejaVu Sans,28");
}

TEST_F(FontSelectorTest, APressRefreshesNoMoreThanItsRow) {
    open("DejaVu Sans,28");
    scene_->display.areas.clear();
    selector_->pointer(kPointerDown, middle(row(2)));
    ASSERT_EQ(scene_->display.areas.size(), 1U);
    EXPECT_EQ(scene_->display.areas.front().w, boxes_.list.w);
    EXPECT_LE(scene_->display.areas.front().h, row(2).h + 1);
}

TEST_F(FontSelectorTest, StaysWithinItsPanelOnEveryDevice) {
    for (const Device& device :
         {defaultPanel(), smallGreyPanel(), Device{800, 600, 167, 1.0, false}, Device{1872, 1404, 300, 1.0, true},
          Device{300, 200, 100, 1.0, false}, Device{600, 800, 167, 2.0, false}}) {
        open("Noto Sans Devanagari,96", device);
        const Screen white(device.bounds().size(), scene_->screen.pixels().format());
        Screen& screen = scene_->screen;
        for (const Rect& button : boxes_.sizeButtons) tap(button);
        tap(boxes_.next);
        tap(row(0));
        selector_->paint();
        screen.fill(selector_->area(), kWhite);
        EXPECT_EQ(screen.pixels(), white.pixels()) << device.width << " × " << device.height;
        EXPECT_EQ(selector_->area().intersected(device.bounds()), selector_->area());
    }
}

TEST_F(FontSelectorTest, TouchTargetsAreLargeAndApart) {
    for (const Device& device : {defaultPanel(), smallGreyPanel(), Device{800, 600, 167, 1.0, false}}) {
        const FontSelectorGeometry boxes(device, 12);
        std::vector<Rect> targets = boxes.sizeButtons;
        targets.insert(targets.end(), {boxes.previous, boxes.next, boxes.cancel, boxes.ok, boxes.list, boxes.sample});
        const int nineMillimetres = device.dpi * 90 / 254;
        EXPECT_GE(boxes.list.h / boxes.rows, nineMillimetres);
        for (std::size_t i = 0; i < targets.size(); ++i) {
            EXPECT_GE(targets[i].h, nineMillimetres);
            EXPECT_GE(targets[i].w, nineMillimetres);
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_TRUE(targets[i].intersected(targets[j]).empty()) << i << ", " << j;
        }
    }
}

}  // namespace
}  // namespace host
