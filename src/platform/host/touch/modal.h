#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/host/base/geometry.h"
#include "platform/host/panel/display.h"

namespace host {

/// A call into the application: the trace line without its "> ", and the call itself.
struct Callback {
    std::string entry;
    std::function<void()> run;
};

/// Something that lies over the screen and takes the pointer until it closes: dialog, keyboard, font selector.
/// Owned by Modals.
class Modal {
public:
    virtual ~Modal() = default;

    /// What it covers; constant while it is open.
    [[nodiscard]] virtual Rect area() const = 0;
    /// Paints all of itself into the screen buffer; refreshes nothing.
    virtual void paint() = 0;

    /// Pointer event 29, 30, 31 or 35. A modal acts only on a press that began in it, and refreshes what it
    /// repaints itself.
    virtual void pointer(int type, Point at) = 0;
    /// True while a finger rests on something that acts again and again, such as the backspace key; each `repeat` is
    /// one more of these acts.
    [[nodiscard]] virtual bool repeats() const { return false; }
    virtual void repeat() {}
    virtual void key(Key) {}
    virtual void text(std::string_view) {}
    /// Where text from a physical keyboard appears; nothing when the modal takes none.
    [[nodiscard]] virtual std::optional<Rect> textPlace() const { return std::nullopt; }

    // What a script can ask for. False when it makes no sense for this modal.

    virtual bool answer(int /*button*/) { return false; }
    virtual bool type(std::string_view /*text*/) { return false; }
    virtual bool chooseFont(std::string_view /*font*/) { return false; }
    /// As its cancel key does.
    virtual void cancel() = 0;

    /// The program is about to end: closes without losing what the person has done here.
    virtual void finish() { cancel(); }

    [[nodiscard]] bool closed() const { return closed_; }
    /// What to call once it has closed; nothing for a modal that does not call back.
    [[nodiscard]] std::optional<Callback> takeCallback() { return std::move(callback_); }

protected:
    void close(std::optional<Callback> callback) {
        closed_ = true;
        callback_ = std::move(callback);
    }

private:
    bool closed_ = false;
    std::optional<Callback> callback_;
};

}  // namespace host
