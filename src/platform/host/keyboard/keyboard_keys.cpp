#include "platform/host/keyboard/keyboard_keys.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <numeric>

namespace host {

namespace {

// Font sizes in device-independent units, 160 to the inch.
constexpr int kLetterSize = 30;
constexpr int kWordSize = 24;

constexpr std::size_t kThirdRow = 2;
constexpr std::size_t kBottomRow = 3;
constexpr std::size_t kEndKeys = 3;  // clear, cancel and OK, which every page shares

struct NamedKey {
    KeyRole role;
    const char* name;
    const char* label;
    const char* icon;
    int size;
};

constexpr std::array kNamedKeys = {
    NamedKey{KeyRole::Shift, "shift", "⇧", "key_shift", kLetterSize},
    NamedKey{KeyRole::Page, "page", "", "", kWordSize},
    NamedKey{KeyRole::Language, "language", "", "key_language", kWordSize},
    NamedKey{KeyRole::Backspace, "backspace", "⌫", "key_backspace", kLetterSize},
    NamedKey{KeyRole::Return, "return", "⏎", "key_return", kLetterSize},
    NamedKey{KeyRole::Left, "left", "←", "key_left", kLetterSize},
    NamedKey{KeyRole::Right, "right", "→", "key_right", kLetterSize},
    NamedKey{KeyRole::Up, "up", "↑", "key_up", kLetterSize},
    NamedKey{KeyRole::Down, "down", "↓", "key_down", kLetterSize},
    NamedKey{KeyRole::Clear, "clear", "@Clear", "key_clear", kWordSize},
    NamedKey{KeyRole::Cancel, "cancel", "@Cancel", "", kWordSize},
    NamedKey{KeyRole::Ok, "ok", "@OK", "", kWordSize},
};

const NamedKey& named(KeyRole role) {
    return *std::find_if(kNamedKeys.begin(), kNamedKeys.end(),
                         [role](const NamedKey& key) { return key.role == role; });
}

std::filesystem::path layoutDirectory(const Desk& desk) { return desk.theme.folder("keyboards"); }

/// What the key types, as it looks among its own letters: brackets face the reading direction, and a mark, which alone
/// would hardly be seen, sits on a carrier.
std::string labelOf(const std::string& text, const KeyboardLayout& letters) {
    const bool mark = g_unichar_ismark(g_utf8_get_char(text.c_str()));
    if (!letters.startsRight) return (mark ? "◌" : "") + text;
    constexpr const char* kAmongArabic = "\u061C";  // takes no room
    return kAmongArabic + std::string(mark ? "ـ" : "") + text;
}

/// The widest row of letters; the third also holds shift and backspace.
double unitsOf(const KeyboardPage& page) {
    const auto& rows = page.rows;
    return static_cast<double>(std::max({rows[0].size(), rows[1].size(), rows[kThirdRow].size() + 2}));
}

}  // namespace

KeyboardKeys::KeyboardKeys(const Desk& desk, const KeyboardGeometry& geometry)
    : desk_(desk),
      geometry_(geometry),
      codes_(keyboardCodes(layoutDirectory(desk), desk.languages.code())),
      letters_(loadKeyboardLayout(layoutDirectory(desk), codes_.front())),
      signs_(loadKeyboardLayout(layoutDirectory(desk), kSignsCode)) {
    addEndKeys();
    addRows();
}

void KeyboardKeys::paint() {
    for (Key& key : keys_) key.button.paint(desk_);
}

std::optional<KeyPress> KeyboardKeys::pointer(int type, Point at) {
    for (Key& key : keys_) {
        if (!key.button.pointer(desk_, type, at)) continue;
        const KeyPress press{key.role, key.role == KeyRole::Character ? key.name : std::string()};
        // What follows may replace all keys, this one too.
        if (press.role == KeyRole::Shift) advanceShift();
        if (press.role == KeyRole::Page) changePage();
        if (press.role == KeyRole::Language) nextLanguage();
        if (press.role == KeyRole::Character) spendShift();
        return press;
    }
    return std::nullopt;
}

std::optional<KeyPress> KeyboardKeys::held() const {
    constexpr std::array kRepeating = {KeyRole::Backspace, KeyRole::Left, KeyRole::Right, KeyRole::Up, KeyRole::Down};
    for (const Key& key : keys_) {
        const bool repeats = std::find(kRepeating.begin(), kRepeating.end(), key.role) != kRepeating.end();
        if (repeats && key.button.pressed()) return KeyPress{key.role, {}};
    }
    return std::nullopt;
}

std::optional<Rect> KeyboardKeys::rectOf(std::string_view name) const {
    const std::string_view wanted = name == "space" ? " " : name;
    for (const Key& key : keys_)
        if (key.name == wanted) return key.button.box();
    return std::nullopt;
}

const KeyboardPage& KeyboardKeys::page() const {
    const KeyboardLayout& layout = showsSigns_ ? signs_ : letters_;
    return shift_ == ShiftState::Off ? layout.base : layout.shifted;
}

/// Side by side in the middle of a row that is `units` wide; each is as many units wide as its width says.
std::vector<Rect> KeyboardKeys::boxes(std::size_t row, double units, std::span<const double> widths) const {
    const Rect area = geometry_.rows[row];
    const double unit = (area.w + geometry_.gap) / units;
    const double taken = std::accumulate(widths.begin(), widths.end(), 0.0);
    double left = area.x + unit * (units - taken) / 2;
    std::vector<Rect> placed;
    for (const double width : widths) {
        const double right = left + unit * width;
        const int x = static_cast<int>(std::lround(left));
        placed.push_back({x, area.y, static_cast<int>(std::lround(right)) - x - geometry_.gap, area.h});
        left = right;
    }
    return placed;
}

void KeyboardKeys::addEndKeys() {
    addNamed(KeyRole::Clear, geometry_.clear);
    addNamed(KeyRole::Cancel, geometry_.cancel);
    addNamed(KeyRole::Ok, geometry_.ok);
}

void KeyboardKeys::addRows() {
    const double units = unitsOf(page());
    addCharacters(0, units);
    addCharacters(1, units);
    addThirdRow(units);
    addBottomRow();
}

void KeyboardKeys::addCharacters(std::size_t row, double units) {
    const auto& texts = page().rows[row];
    const std::vector<double> widths(texts.size(), 1.0);
    const auto places = boxes(row, units, widths);
    for (std::size_t i = 0; i < texts.size(); ++i) addCharacter(texts[i], places[i]);
}

/// Shift and backspace take what the letters between them leave.
void KeyboardKeys::addThirdRow(double units) {
    const auto& texts = page().rows[kThirdRow];
    std::vector<double> widths(texts.size() + 2, 1.0);
    widths.front() = widths.back() = (units - static_cast<double>(texts.size())) / 2;
    const auto places = boxes(kThirdRow, units, widths);
    addShift(places.front());
    for (std::size_t i = 0; i < texts.size(); ++i) addCharacter(texts[i], places[i + 1]);
    addNamed(KeyRole::Backspace, places.back());
}

void KeyboardKeys::addBottomRow() {
    constexpr std::array kWidths = {1.5, 1.25, 1.0, 2.75, 1.0, 1.0, 1.0, 1.0, 1.0, 1.5};
    constexpr double kUnits = 13;
    const auto& beside = page().rows[kBottomRow];
    const auto places = boxes(kBottomRow, kUnits, kWidths);
    addNamed(KeyRole::Page, places[0], showsSigns_ ? letters_.letters : signs_.letters);
    addNamed(KeyRole::Language, places[1], letters_.code);
    addCharacter(beside[0], places[2]);
    addCharacter(" ", places[3]);
    addCharacter(beside[1], places[4]);
    addNamed(KeyRole::Left, places[5]);
    addNamed(KeyRole::Right, places[6]);
    addNamed(KeyRole::Up, places[7]);
    addNamed(KeyRole::Down, places[8]);
    addNamed(KeyRole::Return, places[9]);
}

void KeyboardKeys::addCharacter(const std::string& text, Rect box) {
    const bool space = text == " ";
    const std::string label = space ? letters_.name : labelOf(text, showsSigns_ ? signs_ : letters_);
    const font_s font{desk_.text.defaultFamily(0), space ? kWordSize : kLetterSize};
    keys_.push_back({KeyRole::Character, text, TouchButton(box, {.label = label, .font = font})});
}

void KeyboardKeys::addNamed(KeyRole role, Rect box, const std::string& label) {
    const NamedKey& key = named(role);
    const font_s font{desk_.text.defaultFamily(0), key.size};
    const std::string shown = label.empty() ? desk_.languages.translated(key.label) : label;
    keys_.push_back({role, key.name, TouchButton(box, {.label = shown, .icon = key.icon, .font = font})});
}

void KeyboardKeys::addShift(Rect box) {
    addNamed(KeyRole::Shift, box);
    TouchButton& button = keys_.back().button;
    if (shift_ == ShiftState::Locked && !showsSigns_) button.setFace("⇪", "key_shift_locked");
    button.setMarked(shift_ != ShiftState::Off);
}

/// For letters: once, locked, off. The signs have two pages to go between.
void KeyboardKeys::advanceShift() {
    switch (shift_) {
        case ShiftState::Off:
            shift_ = showsSigns_ ? ShiftState::Locked : ShiftState::Once;
            break;
        case ShiftState::Once:
            shift_ = ShiftState::Locked;
            break;
        case ShiftState::Locked:
            shift_ = ShiftState::Off;
            break;
    }
    showRows();
}

/// A letter has been typed: shift that was for one is over.
void KeyboardKeys::spendShift() {
    if (shift_ != ShiftState::Once) return;
    shift_ = ShiftState::Off;
    showRows();
}

void KeyboardKeys::changePage() {
    showsSigns_ = !showsSigns_;
    shift_ = ShiftState::Off;
    showRows();
}

void KeyboardKeys::nextLanguage() {
    std::rotate(codes_.begin(), std::next(codes_.begin()), codes_.end());
    letters_ = loadKeyboardLayout(layoutDirectory(desk_), codes_.front());
    showsSigns_ = false;
    shift_ = ShiftState::Off;
    showRows();
}

/// A new page: all keys but the end keys, repainted and refreshed at once.
void KeyboardKeys::showRows() {
    keys_.erase(keys_.begin() + kEndKeys, keys_.end());
    addRows();
    const Rect area = geometry_.rows.front().united(geometry_.rows.back());
    desk_.screen.fill(area, kWhite);
    for (auto key = keys_.begin() + kEndKeys; key != keys_.end(); ++key) key->button.paint(desk_);
    desk_.panel.update(area, Waveform::Fast);
}

}  // namespace host
