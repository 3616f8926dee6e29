#include "platform/host/dialogs/message_dialog.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/host/touch/touch_button.h"

namespace host {

namespace {

// Design units, 300 to the inch.
constexpr int kWidth = 1000;
constexpr int kScreenMargin = 30;
constexpr int kPadding = 60;
constexpr int kGap = 40;
constexpr int kButtonHeight = 150;
// Device-independent units, 160 to the inch.
constexpr int kTitleSize = 32;
constexpr int kTextSize = 26;
constexpr int kButtonSize = 28;

constexpr int kCancelled = 1;

class MessageDialog final : public Modal {
public:
    MessageDialog(const Desk& desk, const Message& message, dialog_callback_t callback);

    [[nodiscard]] Rect area() const override { return area_; }
    void paint() override;
    void pointer(int type, Point at) override;
    void key(Key key) override;
    bool answer(int button) override;
    void cancel() override { answerWith(kCancelled); }

private:
    struct Paragraph {
        std::string text;
        font_s font;
        Rect box;
    };

    void layOut();
    bool layOut(int percent);
    void placeButtons(Rect row, const Message& message);
    void paintParagraph(const Paragraph& paragraph);
    void answerWith(int button);

    Desk desk_;
    dialog_callback_t callback_;
    Paragraph title_;
    Paragraph text_;
    Rect area_;
    Rect buttonRow_;
    font_s buttonFont_;
    std::vector<TouchButton> buttons_;
};

MessageDialog::MessageDialog(const Desk& desk, const Message& message, dialog_callback_t callback)
    : desk_(desk),
      callback_(callback),
      title_{desk.languages.translated(message.title), {desk.text.defaultFamily(0), kTitleSize}, {}},
      text_{desk.languages.translated(message.text), {desk.text.defaultFamily(0), kTextSize}, {}},
      buttonFont_{desk.text.defaultFamily(0), kButtonSize} {
    layOut();
    placeButtons(buttonRow_, message);
}

/// As large as it is meant; where the screen is too low for the texts, letters and lengths shrink alike.
void MessageDialog::layOut() {
    constexpr int kLeastPercent = 30;
    for (int percent = 100; !layOut(percent) && percent > kLeastPercent; percent -= 10) {
    }
}

/// From the title down; the sheet is as high as its texts ask for, but stays on the screen with its buttons whole.
/// True when all of it has room.
bool MessageDialog::layOut(int percent) {
    const Device& device = desk_.device;
    const auto shrunk = [percent](int length) { return std::max(length * percent / 100, 1); };
    const int margin = shrunk(device.designToPixel(kScreenMargin));
    const int padding = shrunk(device.designToPixel(kPadding));
    const int gap = shrunk(device.designToPixel(kGap));
    const int buttonHeight = shrunk(device.designToPixel(kButtonHeight));
    title_.font.size = shrunk(kTitleSize);
    text_.font.size = shrunk(kTextSize);
    buttonFont_.size = shrunk(kButtonSize);
    const int width = std::min(device.designToPixel(kWidth), device.width - 2 * margin);
    const int inner = std::max(width - 2 * padding, 1);

    const int titleHeight = desk_.text.measure(title_.text, title_.font, inner).h;
    const int textHeight = desk_.text.measure(text_.text, text_.font, inner).h;
    const int wanted = 2 * padding + titleHeight + gap + textHeight + 2 * gap + buttonHeight;
    const int height = std::min(wanted, device.height - 2 * margin);

    area_ = {(device.width - width) / 2, (device.height - height) / 2, width, height};
    const int left = area_.x + padding;
    title_.box = {left, area_.y + padding, inner, titleHeight};
    buttonRow_ = {left, area_.y + height - padding - buttonHeight, inner, buttonHeight};
    const int textTop = title_.box.y + titleHeight + gap;
    text_.box = {left, textTop, inner, buttonRow_.y - 2 * gap - textTop};
    return height == wanted;
}

void MessageDialog::placeButtons(Rect row, const Message& message) {
    const int gap = desk_.device.designToPixel(kGap);
    const int width = (row.w - gap) / 2;
    const Languages& languages = desk_.languages;
    buttons_.emplace_back(Rect{row.x, row.y, width, row.h},
                          ButtonFace{.label = languages.translated(message.button1), .font = buttonFont_});
    buttons_.emplace_back(Rect{row.x + row.w - width, row.y, width, row.h},
                          ButtonFace{.label = languages.translated(message.button2), .font = buttonFont_});
}

void MessageDialog::paint() {
    paintSheet(desk_, area_);
    paintParagraph(title_);
    paintParagraph(text_);
    for (TouchButton& button : buttons_) button.paint(desk_);
}

/// Accents of the first line and tails of the last may reach a little out of the box.
void MessageDialog::paintParagraph(const Paragraph& paragraph) {
    const Rect& box = paragraph.box;
    const int beyond = desk_.device.designToPixel(kGap) / 2;
    const TextBlock block = desk_.text.layOut(paragraph.text, paragraph.font, box.w);
    block.draw(desk_.screen, {box.x, box.y}, box.inset(-beyond), kBlack);
}

void MessageDialog::pointer(int type, Point at) {
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        if (buttons_[i].pointer(desk_, type, at)) answerWith(static_cast<int>(i) + 1);
}

void MessageDialog::key(Key key) {
    if (key == Key::Escape) cancel();
}

bool MessageDialog::answer(int button) {
    if (button < 1 || button > static_cast<int>(buttons_.size())) return false;
    answerWith(button);
    return true;
}

void MessageDialog::answerWith(int button) {
    if (!callback_) return close(std::nullopt);
    close(Callback{"dialog " + std::to_string(button), [callback = callback_, button] { callback(button); }});
}

}  // namespace

std::unique_ptr<Modal> makeMessageDialog(const Desk& desk, const Message& message, dialog_callback_t callback) {
    return std::make_unique<MessageDialog>(desk, message, callback);
}

}  // namespace host
