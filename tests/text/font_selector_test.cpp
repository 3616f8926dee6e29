#include "platform/host/dialogs/font_selector.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>

#include "platform/host/dialogs/font_selector_geometry.h"
#include "platform/host/touch/pointer_event.h"
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

    /// Opens with that font and returns what OK answers after these taps.
    std::string chosen(const std::string& font, const std::vector<Rect>& taps) {
        open(font, defaultPanel(), static_cast<int>(boxes_.sizeButtons.size()));
        for (const Rect& box : taps) tap(box);
        return confirmed();
    }

    [[nodiscard]] std::vector<std::string> families() { return scene_->text.families("en"); }
    [[nodiscard]] std::string familyAt(int index) { return families().at(static_cast<std::size_t>(index)); }
    [[nodiscard]] int indexOf(const std::string& family) {
        const std::vector<std::string> all = families();
        return static_cast<int>(std::find(all.begin(), all.end(), family) - all.begin());
    }

    std::optional<TestDesk> scene_{defaultPanel()};
    FontSelectorGeometry boxes_{defaultPanel(), 11};
    std::unique_ptr<Modal> selector_;
    std::string entry_;
};

TEST_F(FontSelectorTest, AnswersWithWhatWasTapped) {
    EXPECT_EQ(chosen("DejaVu Serif,36", {}), "DejaVu Serif,36");
    EXPECT_THAT(answer, testing::ElementsAre("DejaVu Serif,36", "DejaVu Serif", "36", ""));
    EXPECT_EQ(entry_, "font \"DejaVu Serif,36\"");
    EXPECT_EQ(chosen("DejaVu Sans,28", {row(2), boxes_.sizeButtons[0]}), familyAt(2) + ",8");

    const int count = static_cast<int>(families().size());
    const int lastPage = (count - 1) / boxes_.rows * boxes_.rows;
    EXPECT_EQ(chosen("DejaVu Sans,28", {boxes_.next, row(0)}), familyAt(boxes_.rows) + ",28");
    EXPECT_EQ(chosen("DejaVu Sans,28", {boxes_.previous, boxes_.next, boxes_.previous, row(0)}),
              familyAt(lastPage) + ",28");
    if (count % boxes_.rows != 0) {
        EXPECT_EQ(chosen("DejaVu Sans,28", {boxes_.previous, row(boxes_.rows - 1)}), "DejaVu Sans,28") << "no font";
    }
    const int place = indexOf("Noto Serif");
    const int beside = (place + 1) % boxes_.rows;
    EXPECT_EQ(chosen("Noto Serif,28", {row(beside)}), familyAt(place / boxes_.rows * boxes_.rows + beside) + ",28")
        << "opens at the page of the present font";

    boxes_ = FontSelectorGeometry(defaultPanel(), 12);
    EXPECT_EQ(chosen("DejaVu Sans,33", {boxes_.sizeButtons[0], boxes_.sizeButtons[7]}), "DejaVu Sans,33");
}

TEST_F(FontSelectorTest, CancelDoesNotCallBack) {
    for (const bool byKey : {false, true}) {
        open("DejaVu Sans,28");
        byKey ? selector_->key(Key::Escape) : tap(boxes_.cancel);
        EXPECT_TRUE(selector_->closed());
        EXPECT_FALSE(calledBack());
    }
}

TEST_F(FontSelectorTest, StaysWithinItsPanelWithLargeTargetsApart) {
    for (const Device& device :
         {defaultPanel(), smallGreyPanel(), Device{800, 600, 167, 1.0, false}, Device{1872, 1404, 300, 1.0, true},
          Device{300, 200, 100, 1.0, false}, Device{600, 800, 167, 2.0, false}}) {
        SCOPED_TRACE(device.width);
        open("Noto Sans Devanagari,96", device);
        Screen& screen = scene_->screen;
        const Framebuffer white = Screen(device.bounds().size(), screen.pixels().format()).pixels();
        for (const Rect& button : boxes_.sizeButtons) tap(button);
        tap(boxes_.next);
        tap(row(0));
        selector_->paint();
        screen.fill(selector_->area(), kWhite);
        EXPECT_EQ(screen.pixels(), white);
        EXPECT_EQ(selector_->area().intersected(device.bounds()), selector_->area());

        if (device.height < 600 || device.scale > 1) continue;  // too small for fingers
        std::vector<Rect> targets = boxes_.sizeButtons;
        targets.insert(targets.end(),
                       {boxes_.previous, boxes_.next, boxes_.cancel, boxes_.ok, boxes_.sample, row(0), row(1)});
        for (const Rect& target : targets) {
            EXPECT_GE(std::min(target.w, target.h), device.dpi * 80 / 254) << "eight millimetres";
            const auto meets = [&](const Rect& other) { return !other.intersected(target).empty(); };
            EXPECT_EQ(std::count_if(targets.begin(), targets.end(), meets), 1);
        }
    }
}

}  // namespace
}  // namespace host
