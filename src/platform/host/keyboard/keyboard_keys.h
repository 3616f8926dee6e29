#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/keyboard/keyboard_geometry.h"
#include "platform/host/keyboard/keyboard_layout.h"
#include "platform/host/touch/desk.h"
#include "platform/host/touch/touch_button.h"

namespace host {

/// What a key does. The first three change the keys themselves.
enum class KeyRole { Shift, Page, Language, Character, Backspace, Return, Left, Right, Up, Down, Clear, Cancel, Ok };

/// A key that has acted; `text` is what a character key types.
struct KeyPress {
    KeyRole role;
    std::string text;
};

/// All keys of the keyboard, the page they show now, and the state of shift. Owned by Keyboard.
class KeyboardKeys {
public:
    KeyboardKeys(const Desk& desk, const KeyboardGeometry& geometry);

    void paint();

    /// One pointer event; keys repaint and refresh themselves. Returns the key that has acted.
    [[nodiscard]] std::optional<KeyPress> pointer(int type, Point at);

    /// The key under the finger, if it is one that repeats.
    [[nodiscard]] std::optional<KeyPress> held() const;

    /// The box of a character key by its text, or of another key by its name: "shift", "page", "language", "space",
    /// "backspace", "return", "left", "right", "up", "down", "clear", "cancel", "ok". Nothing when the page lacks it.
    [[nodiscard]] std::optional<Rect> rectOf(std::string_view name) const;

    /// True when a text in the keys' language starts at the right.
    [[nodiscard]] bool startsRight() const { return letters_.startsRight; }

private:
    enum class ShiftState { Off, Once, Locked };
    struct Key {
        KeyRole role;
        std::string name;
        TouchButton button;
    };

    [[nodiscard]] const KeyboardPage& page() const;
    [[nodiscard]] std::vector<Rect> boxes(std::size_t row, double units, std::span<const double> widths) const;
    void addEndKeys();
    void addRows();
    void addCharacters(std::size_t row, double units);
    void addThirdRow(double units);
    void addBottomRow();
    void addCharacter(const std::string& text, Rect box);
    void addNamed(KeyRole role, Rect box, const std::string& label = {});
    void addShift(Rect box);

    void advanceShift();
    void spendShift();
    void changePage();
    void nextLanguage();
    void showRows();

    Desk desk_;
    KeyboardGeometry geometry_;
    std::vector<std::string> codes_;  ///< the layouts in the order of the language key; the present one first
    KeyboardLayout letters_;
    KeyboardLayout signs_;
    bool showsSigns_ = false;
    ShiftState shift_ = ShiftState::Off;
    std::vector<Key> keys_;
};

}  // namespace host
