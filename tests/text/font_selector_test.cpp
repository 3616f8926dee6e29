#include "platform/host/dialogs/font_selector.h"

#include <gmock/gmock.h>

#include <cstring>

#include "platform/host/dialogs/font_selector_geometry.h"
#include "platform/host/touch/pointer_event.h"
#include "support/test_desk.h"

namespace {

using namespace host;

std::vector<std::string> answer;

/// The strings are the application's to write to.
void note(char* font, char* name, char* size, char* style) {
    answer = {font, name, size, style};
    for (char* text : {font, name, size, style}) std::memset(text, 'x', std::strlen(text));
}

struct FontSelectorTest : testing::Test {
    void open(const std::string& font, const Device& device = defaultPanel(), int sizes = 11) {
        scene.emplace(device);
        boxes = FontSelectorGeometry(device, sizes);
        selector = makeFontSelector(scene->desk, {"Font", font, true, note});
        selector->paint();
    }
    void tap(Rect box) {
        for (const int type : {kPointerDown, kPointerUp})
            selector->pointer(type, {box.x + box.w / 2, box.y + box.h / 2});
    }
    [[nodiscard]] Rect row(int number) const {
        const int height = boxes.list.h / boxes.rows;
        return {boxes.list.x, boxes.list.y + number * height, boxes.list.w, height};
    }
    /// Opens with that font and taps these; the first string of the answer.
    std::string answered(const std::string& font, const std::vector<Rect>& taps, int sizes = 11) {
        open(font, defaultPanel(), sizes);
        for (const Rect& box : taps) tap(box);
        const std::optional<Callback> callback = selector->closed() ? selector->takeCallback() : std::nullopt;
        if (!callback) return "none";
        callback->run();
        EXPECT_EQ(callback->entry, "font \"" + answer.front() + "\"");
        return answer.front();
    }

    std::optional<TestDesk> scene{defaultPanel()};
    FontSelectorGeometry boxes{defaultPanel(), 11};
    std::unique_ptr<Modal> selector;
};

TEST_F(FontSelectorTest, AnswersWithWhatWasTapped) {
    const std::vector<std::string> families = scene->text.families("en");
    const auto family = [&](int place) { return families.at(static_cast<std::size_t>(place)) + ",28"; };
    const int rows = boxes.rows, count = static_cast<int>(families.size()), lastPage = (count - 1) / rows * rows;
    const auto place = static_cast<int>(std::ranges::find(families, "Noto Serif") - families.begin());
    const Rect ok = boxes.ok, previous = boxes.previous, next = boxes.next;
    EXPECT_EQ(answered("DejaVu Sans,28", {row(2), boxes.sizeButtons[0], ok}), families[2] + ",8");
    EXPECT_EQ(answered("DejaVu Sans,28", {next, row(0), ok}), family(rows));
    EXPECT_EQ(answered("DejaVu Sans,28", {previous, next, row(0), ok}), family(0));
    EXPECT_EQ(answered("DejaVu Sans,28", {previous, row(0), row(rows - 1), ok}),
              family(lastPage + rows > count ? lastPage : count - 1))
        << "a row without a font leaves the choice";
    EXPECT_EQ(answered("Noto Serif,28", {row(0), ok}), family(place / rows * rows));
    EXPECT_EQ(answered("DejaVu Serif,36", {ok}), "DejaVu Serif,36");
    EXPECT_THAT(answer, testing::ElementsAre("DejaVu Serif,36", "DejaVu Serif", "36", ""));
    EXPECT_EQ(answered("DejaVu Serif,36", {row(2), boxes.cancel}), "none");
    open("DejaVu Sans,28");
    selector->key(Key::Escape);
    EXPECT_TRUE(selector->closed() && !selector->takeCallback());
    boxes = FontSelectorGeometry(defaultPanel(), 12);  // an unusual size has a button of its own
    EXPECT_EQ(answered("DejaVu Sans,33", {boxes.sizeButtons[0], boxes.sizeButtons[7], ok}, 12), "DejaVu Sans,33");
}

TEST_F(FontSelectorTest, StaysWithinItsPanelWithLargeTargetsApart) {
    for (const Device& device :
         {defaultPanel(), smallGreyPanel(), Device{800, 600, 167, 1.0, false}, Device{1872, 1404, 300, 1.0, true},
          Device{300, 200, 100, 1.0, false}, Device{600, 800, 167, 2.0, false}}) {
        SCOPED_TRACE(device.width);
        open("Noto Sans Devanagari,96", device);
        std::vector<Rect> targets = boxes.sizeButtons;
        targets.insert(targets.end(), {boxes.previous, boxes.next, row(0), row(1), boxes.sample});
        for (const Rect& target : targets) tap(target);
        selector->paint();
        scene->screen.fill(selector->area(), kWhite);
        EXPECT_EQ(scene->screen.pixels(), Screen(device.bounds().size(), scene->screen.pixels().format()).pixels());
        EXPECT_EQ(selector->area().intersected(device.bounds()), selector->area());

        if (device.height < 600 || device.scale > 1) continue;  // too small for fingers
        targets.insert(targets.end(), {boxes.cancel, boxes.ok});
        for (const Rect& target : targets) {
            EXPECT_GE(std::min(target.w, target.h), device.dpi * 80 / 254) << "eight millimetres";
            const auto meets = [&](const Rect& other) { return !other.intersected(target).empty(); };
            EXPECT_EQ(std::ranges::count_if(targets, meets), 1);
        }
    }
}

}  // namespace
