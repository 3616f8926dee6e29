#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/callbacks.h"
#include "platform/host/keyboard/keyboard_field.h"
#include "platform/host/keyboard/keyboard_geometry.h"
#include "platform/host/keyboard/keyboard_keys.h"
#include "platform/host/keyboard/keyboard_text.h"
#include "platform/host/touch/desk.h"
#include "platform/host/touch/modal.h"

namespace host {

/// What the application asks of the on-screen keyboard; see OpenKeyboard.
struct KeyboardRequest {
    std::string title;
    char* buffer = nullptr;
    int maxBytes = 0;
    int flags = 0;
    keyboard_callback_t callback = nullptr;
};

/// The on-screen keyboard: a field with the text being typed over touch keys. A physical keyboard types into it too.
/// The request's buffer is written only when OK closes it.
class Keyboard final : public Modal {
public:
    Keyboard(const Desk& desk, const KeyboardRequest& request);

    [[nodiscard]] Rect area() const override { return geometry_.area; }
    void paint() override;
    void pointer(int type, Point at) override;
    [[nodiscard]] bool repeats() const override { return keys_.held().has_value(); }
    void repeat() override;
    void key(Key key) override;
    void text(std::string_view utf8) override;
    [[nodiscard]] std::optional<Rect> textPlace() const override { return field_.box(); }
    bool type(std::string_view utf8) override;
    void cancel() override;
    /// As its OK key does: the text typed so far counts.
    void finish() override { confirm(); }

    /// Where a key is now, by the text it types or by its name (see KeyboardKeys::rectOf).
    [[nodiscard]] std::optional<Rect> keyRect(std::string_view name) const { return keys_.rectOf(name); }

private:
    void act(const KeyPress& press);
    void pointAt(int type, Point at);
    void showText();
    void confirm();
    void closeAndTell();

    Desk desk_;
    KeyboardRequest request_;
    KeyboardGeometry geometry_;
    std::string title_;
    KeyboardText text_;
    KeyboardField field_;
    KeyboardKeys keys_;
    bool fieldPressed_ = false;
    bool repeated_ = false;  ///< in the present press
};

[[nodiscard]] std::unique_ptr<Modal> makeKeyboard(const Desk& desk, const KeyboardRequest& request);

}  // namespace host
