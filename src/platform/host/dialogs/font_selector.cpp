#include "platform/host/dialogs/font_selector.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/host/dialogs/font_list.h"
#include "platform/host/dialogs/font_selector_geometry.h"
#include "platform/host/record/json.h"
#include "platform/host/touch/touch_button.h"

namespace host {

namespace {

// Device-independent units, 160 to the inch.
constexpr int kTextSize = 28;
constexpr int kUsualSize = 28;

constexpr int kSampleMargin = 16;  // design units

/// "Name,Size" taken apart; the name ends at the first comma.
struct FontChoice {
    explicit FontChoice(std::string_view text)
        : name(text.substr(0, text.find(','))), size(text.substr(std::min(name.size() + 1, text.size()))) {}

    std::string name;
    std::string size;
};

int currentSize(const FontRequest& request) {
    const long size = std::strtol(FontChoice(request.font).size.c_str(), nullptr, 10);
    constexpr long kLargest = 999;
    return size > 0 ? static_cast<int>(std::min(size, kLargest)) : kUsualSize;
}

std::string currentFamily(Text& text, const FontRequest& request) {
    return text.open(FontChoice(request.font).name.c_str(), kUsualSize)->family;
}

/// The sizes on offer, with the present one among them even if it is unusual.
std::vector<int> offeredSizes(int current) {
    std::vector<int> sizes{8, 10, 12, 14, 18, 24, 28, 36, 48, 62, 96};
    const auto place = std::lower_bound(sizes.begin(), sizes.end(), current);
    if (place == sizes.end() || *place != current) sizes.insert(place, current);
    return sizes;
}

/// The callback gets strings that it may write to; they live during the call.
Callback answerWith(font_callback_t callback, std::string font) {
    FontChoice choice(font);
    std::string entry = "font " + jsonQuoted(font);
    return {std::move(entry), [callback, font = std::move(font), choice = std::move(choice)]() mutable {
                std::string style;
                callback(font.data(), choice.name.data(), choice.size.data(), style.data());
            }};
}

class FontSelector final : public Modal {
public:
    FontSelector(const Desk& desk, const FontRequest& request, const std::vector<int>& sizes);

    [[nodiscard]] Rect area() const override { return boxes_.panel; }
    void paint() override;
    void pointer(int type, Point at) override;
    void key(Key key) override;
    bool chooseFont(std::string_view font) override;
    void cancel() override { close(std::nullopt); }

private:
    struct SizeButton {
        TouchButton button;
        int size;
    };

    [[nodiscard]] ButtonFace face(std::string label, std::string icon = {}) const;
    void paintPageText();
    void paintSample();
    void turn(int pages);
    void chooseSize(int size);
    void showSample();
    void confirm();

    Desk desk_;
    std::string title_;
    font_callback_t callback_;
    FontSelectorGeometry boxes_;
    FontList list_;
    int size_;
    TouchButton previous_;
    TouchButton next_;
    std::vector<SizeButton> sizes_;
    TouchButton cancel_;
    TouchButton ok_;
};

FontSelector::FontSelector(const Desk& desk, const FontRequest& request, const std::vector<int>& sizes)
    : desk_(desk),
      title_(request.title),
      callback_(request.callback),
      boxes_(desk.device, static_cast<int>(sizes.size())),
      list_(desk, boxes_.list, boxes_.rows, currentFamily(desk.text, request)),
      size_(currentSize(request)),
      previous_(boxes_.previous, face("<", "explorer_previous")),
      next_(boxes_.next, face(">", "explorer_next")),
      cancel_(boxes_.cancel, face(desk.languages.text("@Cancel"))),
      ok_(boxes_.ok, face(desk.languages.text("@OK"))) {
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        sizes_.push_back({TouchButton(boxes_.sizeButtons[i], face(std::to_string(sizes[i]))), sizes[i]});
        sizes_.back().button.setMarked(sizes[i] == size_);
    }
}

void FontSelector::paint() {
    paintSheet(desk_, boxes_.panel);
    const TextStyle line{.wrap = Wrap::None};
    desk_.text.draw(desk_.screen, boxes_.title, title_, {desk_.text.defaultFamily(0), kTextSize}, line);
    list_.paint();
    paintPageText();
    paintSample();
    for (SizeButton& size : sizes_) size.button.paint(desk_);
    for (TouchButton* button : {&previous_, &next_, &cancel_, &ok_}) button->paint(desk_);
}

void FontSelector::pointer(int type, Point at) {
    if (list_.pointer(type, at)) showSample();
    if (previous_.pointer(desk_, type, at)) turn(-1);
    if (next_.pointer(desk_, type, at)) turn(1);
    for (SizeButton& size : sizes_) {
        if (size.button.pointer(desk_, type, at)) chooseSize(size.size);
    }
    if (cancel_.pointer(desk_, type, at)) cancel();
    if (ok_.pointer(desk_, type, at)) confirm();
}

void FontSelector::key(Key key) {
    if (key == Key::Escape) cancel();
    if (key == Key::Return) confirm();
}

bool FontSelector::chooseFont(std::string_view font) {
    if (callback_ == nullptr) return false;
    close(answerWith(callback_, std::string(font)));
    return true;
}

ButtonFace FontSelector::face(std::string label, std::string icon) const {
    return {std::move(label), std::move(icon), font_s{desk_.text.defaultFamily(0), kTextSize}};
}

void FontSelector::paintPageText() {
    desk_.text.draw(desk_.screen, boxes_.page, list_.pageText(), {desk_.text.defaultFamily(0), kTextSize},
                    {.align = Align::Centre, .wrap = Wrap::None});
}

void FontSelector::paintSample() {
    const int line = desk_.device.frameThickness(kThinLine);
    desk_.screen.frame({.box = boxes_.sample, .thickness = line, .radius = 0});
    const Rect clip = boxes_.sample.inset(line);
    const Rect inside = clip.inset(desk_.device.designToPixel(kSampleMargin));
    const font_s font{list_.chosen(), size_};
    const std::string own = desk_.text.sample(font.family);
    const std::string& sample = own.empty() ? desk_.languages.text("@SampleText") : own;
    TextBlock block = desk_.text.layOut(sample, font, inside.w);
    block.fitHeight(clip.h);
    const Point topLeft{inside.x, clip.y + (clip.h - block.size().h) / 2};
    block.draw(desk_.screen, topLeft, clip, kBlack);
}

void FontSelector::turn(int pages) {
    list_.turn(pages);
    desk_.screen.fill(boxes_.list, kWhite);
    desk_.screen.fill(boxes_.page, kWhite);
    list_.paint();
    paintPageText();
    desk_.panel.update(boxes_.list.united(boxes_.page), Waveform::Regular);
}

void FontSelector::chooseSize(int size) {
    for (SizeButton& other : sizes_) {
        if (other.size != size_ && other.size != size) continue;
        other.button.setMarked(other.size == size);
        other.button.repaint(desk_);
        desk_.panel.update(other.button.box(), Waveform::Regular);
    }
    size_ = size;
    showSample();
}

void FontSelector::showSample() {
    desk_.screen.fill(boxes_.sample, kWhite);
    paintSample();
    desk_.panel.update(boxes_.sample, Waveform::Regular);
}

void FontSelector::confirm() {
    if (!chooseFont(list_.chosen() + "," + std::to_string(size_))) cancel();
}

}  // namespace

std::unique_ptr<Modal> makeFontSelector(const Desk& desk, const FontRequest& request) {
    const std::vector<int> sizes = request.withSize ? offeredSizes(currentSize(request)) : std::vector<int>{};
    return std::make_unique<FontSelector>(desk, request, sizes);
}

}  // namespace host
