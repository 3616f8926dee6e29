#include "platform/host/browser/messages.h"

#include <glib.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <initializer_list>

namespace host {

namespace {

// The first byte of a message to the page, and of one from it.
constexpr char kPanel = 1;
constexpr char kPixels = 2;
constexpr char kNotice = 3;
constexpr char kTyping = 4;
constexpr char kWetInk = 5;
constexpr std::uint32_t kPointer = 1;
constexpr std::uint32_t kKey = 2;
constexpr std::uint32_t kText = 3;

constexpr std::size_t kLongestText = 4096;

std::string words(std::initializer_list<int> values) {
    std::string bytes;
    for (const int value : values) bytes.append({static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)});
    return bytes;
}

std::uint32_t takeNumber(std::string_view& bytes, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value |= std::uint32_t{static_cast<unsigned char>(bytes[i])} << 8 * i;
    bytes.remove_prefix(size);
    return value;
}

/// The pixel along one side of the panel; nothing for a place that is no number.
std::optional<int> takePixel(std::string_view& bytes, int side) {
    const auto place = std::bit_cast<float>(takeNumber(bytes, sizeof(float)));
    if (!std::isfinite(place)) return {};
    return static_cast<int>(std::clamp(place, 0.0F, static_cast<float>(side - 1)));
}

std::optional<Message> readPointer(std::string_view bytes, Size panel) {
    constexpr std::size_t kHead = 6;
    constexpr std::size_t kPlace = 8;
    if (bytes.size() < kHead + kPlace || (bytes.size() - kHead) % kPlace != 0) return {};
    PointerMessage message;
    const std::uint32_t action = takeNumber(bytes, 1);
    const std::uint32_t kind = takeNumber(bytes, 1);
    if (action > 2 || kind > 2) return {};
    message.action = PointerMessage::Action{static_cast<std::uint8_t>(action)};
    message.kind = PointerMessage::Kind{static_cast<std::uint8_t>(kind)};
    message.id = takeNumber(bytes, 4);
    if (message.action != PointerMessage::Action::Move && bytes.size() != kPlace) return {};
    while (!bytes.empty()) {
        const std::optional<int> x = takePixel(bytes, panel.w);
        const std::optional<int> y = takePixel(bytes, panel.h);
        if (!x || !y) return {};
        message.path.push_back({*x, *y});
    }
    return message;
}

std::optional<Message> readKey(std::string_view bytes) {
    if (bytes.size() != 1) return {};
    const std::uint32_t key = takeNumber(bytes, 1);
    if (key > static_cast<std::uint32_t>(Key::End)) return {};
    Input input;
    input.kind = Input::Kind::Key;
    input.key = static_cast<Key>(key);
    return input;
}

std::optional<Message> readText(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > kLongestText) return {};
    if (g_utf8_validate_len(bytes.data(), bytes.size(), nullptr) == 0) return {};
    Input input;
    input.kind = Input::Kind::Text;
    input.text = bytes;
    return input;
}

}  // namespace

std::optional<Message> readMessage(std::string_view bytes, Size panel) {
    if (bytes.empty()) return {};
    switch (takeNumber(bytes, 1)) {
        case kPointer:
            return readPointer(bytes, panel);
        case kKey:
            return readKey(bytes);
        case kText:
            return readText(bytes);
        default:
            return {};
    }
}

std::string panelMessage(Size panel, PixelFormat format) {
    return std::string{kPanel} + words({panel.w, panel.h}) + (format == PixelFormat::Grey8 ? '\1' : '\3');
}

std::string pixelsMessage(const Framebuffer& shown, Rect area) {
    std::string bytes = std::string{kPixels} + words({area.x, area.y, area.w, area.h});
    const std::size_t rowBytes = static_cast<std::size_t>(area.w) * static_cast<std::size_t>(shown.bytesPerPixel());
    bytes.reserve(bytes.size() + rowBytes * static_cast<std::size_t>(area.h));
    for (int y = area.y; y < area.bottom(); ++y)
        bytes.append(reinterpret_cast<const char*>(shown.at(area.x, y)), rowBytes);
    return bytes;
}

std::string noticeMessage(bool anotherDraws) { return {kNotice, anotherDraws ? '\1' : '\0'}; }

std::string wetInkMessage(std::optional<WetTip> tip) {
    if (!tip) return {kWetInk};
    std::string bytes = kWetInk + words({tip->end.x, tip->end.y, tip->width});
    for (const int shift : {16, 8, 0}) bytes += static_cast<char>(tip->colour >> shift & 0xFF);
    return bytes;
}

std::string typingMessage(std::optional<Rect> near) {
    const Rect place = near.value_or(Rect{});
    return std::string{kTyping, near ? '\1' : '\0'} + words({place.x, place.y, place.w, place.h});
}

}  // namespace host
