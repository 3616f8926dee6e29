#include "platform/host/browser/vnc_keyboard.h"

#include <glib.h>

#include <rfb/keysym.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace host {

namespace {

// The second byte of an old keysym is the character's code in a national set, which the first byte names.
struct NationalSet {
    std::uint32_t page;
    const char* charset;
};
constexpr std::array<NationalSet, 9> kNationalSets = {{{0x01, "ISO-8859-2"},
                                                       {0x02, "ISO-8859-3"},
                                                       {0x03, "ISO-8859-4"},
                                                       {0x05, "ISO-8859-6"},
                                                       {0x06, "KOI8-U"},
                                                       {0x07, "ISO-8859-7"},
                                                       {0x0C, "ISO-8859-8"},
                                                       {0x0D, "TIS-620"},
                                                       {0x13, "ISO-8859-15"}}};

// Greek keysyms that stand elsewhere than in ISO 8859-7: accented letters and the sigmas.
constexpr std::array<std::pair<std::uint32_t, char32_t>, 23> kGreek = {
    {{0x7A1, 0x386}, {0x7A2, 0x388}, {0x7A3, 0x389}, {0x7A4, 0x38A}, {0x7A5, 0x3AA}, {0x7A7, 0x38C},
     {0x7A8, 0x38E}, {0x7A9, 0x3AB}, {0x7AB, 0x38F}, {0x7B1, 0x3AC}, {0x7B2, 0x3AD}, {0x7B3, 0x3AE},
     {0x7B4, 0x3AF}, {0x7B5, 0x3CA}, {0x7B6, 0x390}, {0x7B7, 0x3CC}, {0x7B8, 0x3CD}, {0x7B9, 0x3CB},
     {0x7BA, 0x3B0}, {0x7BB, 0x3CE}, {0x7D2, 0x3A3}, {0x7F2, 0x3C3}, {0x7F3, 0x3C2}}};

std::string utf8(char32_t character) {
    std::array<char, 6> bytes{};
    const int length = g_unichar_to_utf8(character, bytes.data());
    return {bytes.data(), static_cast<std::size_t>(length)};
}

std::string fromCharset(std::string_view text, const char* charset) {
    gchar* converted =
        g_convert(text.data(), static_cast<gssize>(text.size()), "UTF-8", charset, nullptr, nullptr, nullptr);
    std::string result = converted != nullptr ? converted : "";
    g_free(converted);
    return result;
}

std::string nationalText(std::uint32_t keysym) {
    const auto greek =
        std::find_if(kGreek.begin(), kGreek.end(), [keysym](const auto& letter) { return letter.first == keysym; });
    if (greek != kGreek.end()) return utf8(greek->second);
    for (const NationalSet& set : kNationalSets) {
        const char code = static_cast<char>(keysym & 0xFF);
        if (set.page == keysym >> 8) return fromCharset({&code, 1}, set.charset);
    }
    return {};
}

std::optional<Key> namedKey(std::uint32_t keysym, bool shift) {
    switch (keysym) {
        case XK_Return:
        case XK_KP_Enter:
            return shift ? Key::ShiftReturn : Key::Return;
        case XK_Escape:
            return Key::Escape;
        case XK_BackSpace:
            return Key::Backspace;
        case XK_Delete:
        case XK_KP_Delete:
            return Key::Delete;
        case XK_Left:
        case XK_KP_Left:
            return Key::Left;
        case XK_Right:
        case XK_KP_Right:
            return Key::Right;
        case XK_Up:
        case XK_KP_Up:
            return Key::Up;
        case XK_Down:
        case XK_KP_Down:
            return Key::Down;
        case XK_Home:
        case XK_KP_Home:
            return Key::Home;
        case XK_End:
        case XK_KP_End:
            return Key::End;
        default:
            return {};
    }
}

Input textInput(std::string text) {
    Input input;
    input.kind = Input::Kind::Text;
    input.text = std::move(text);
    return input;
}

}  // namespace

std::string keysymText(std::uint32_t keysym) {
    constexpr std::uint32_t kUnicode = 0x01000000;  // above it: the code point
    if ((keysym >= 0x20 && keysym <= 0x7E) || (keysym >= 0xA0 && keysym <= 0xFF)) return utf8(keysym);
    if (keysym >= kUnicode) {
        const std::uint32_t character = keysym - kUnicode;
        return g_unichar_validate(character) != 0 && g_unichar_iscntrl(character) == 0 ? utf8(character) : "";
    }
    if (keysym == XK_Linefeed) return "\n";
    if (keysym >= XK_KP_0 && keysym <= XK_KP_9) return utf8('0' + (keysym - XK_KP_0));
    if (keysym >= XK_KP_Multiply && keysym <= XK_KP_Divide) return utf8('*' + (keysym - XK_KP_Multiply));
    if (keysym >= 0x20A0 && keysym <= 0x20AC) return utf8(keysym);  // currencies stand at their own code points
    return nationalText(keysym);
}

std::optional<Input> VncKeyboard::key(std::uint32_t keysym, bool down) {
    if (keysym == XK_Shift_L || keysym == XK_Shift_R) shift_ = down;
    if (keysym == XK_Control_L || keysym == XK_Control_R) control_ = down;
    if (keysym == XK_Alt_L || keysym == XK_Meta_L || keysym == XK_Super_L) alt_ = down;
    if (!down) return {};

    const bool paste = control_ && (keysym == XK_v || keysym == XK_V);
    if (paste && !clipboard_.empty()) return textInput(clipboard_);
    if (control_ || alt_) return {};
    if (const std::optional<Key> named = namedKey(keysym, shift_)) {
        Input input;
        input.kind = Input::Kind::Key;
        input.key = *named;
        return input;
    }
    std::string text = keysymText(keysym);
    if (text.empty()) return {};
    return textInput(std::move(text));
}

void VncKeyboard::setClipboard(const std::string& latin1) { clipboard_ = fromCharset(latin1, "ISO-8859-1"); }

}  // namespace host
