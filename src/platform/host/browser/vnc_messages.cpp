#include "platform/host/browser/vnc_messages.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace host {

namespace {

enum MessageType : unsigned char { SetPixelFormat = 0, SetEncodings = 2, UpdateRequest = 3, KeyEvent = 4 };
constexpr unsigned char kPointerEvent = 5;
constexpr unsigned char kCutText = 6;

// Raw, RRE, CoRRE, hextile, zlib, tight, ZRLE, last rectangle, compression levels 0 to 9. Without a quality level
// tight stays lossless. Cursor and desktop size are left out: the panel has neither a cursor nor another size.
constexpr std::array<std::int32_t, 8> kEncodings = {0, 2, 4, 5, 6, 7, 16, -224};
constexpr std::int32_t kLowestCompression = -256;
constexpr std::int32_t kHighestCompression = -247;

constexpr std::size_t kEncodingsHeader = 4;
constexpr std::size_t kCutTextHeader = 8;

std::uint32_t number(std::string_view bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = at; i < at + count; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

std::optional<std::size_t> normalMessageSize(std::string_view bytes) {
    switch (static_cast<unsigned char>(bytes[0])) {
        case SetPixelFormat:
            return 20;
        case SetEncodings:
            return bytes.size() < kEncodingsHeader ? 0 : kEncodingsHeader + 4 * std::size_t{number(bytes, 2, 2)};
        case UpdateRequest:
            return 10;
        case KeyEvent:
            return 8;
        case kPointerEvent:
            return 6;
        case kCutText:
            return bytes.size() < kCutTextHeader ? 0 : kCutTextHeader + std::size_t{number(bytes, 4, 4)};
        default:
            return {};
    }
}

bool accepted(std::int32_t encoding) {
    if (encoding >= kLowestCompression && encoding <= kHighestCompression) return true;
    return std::find(kEncodings.begin(), kEncodings.end(), encoding) != kEncodings.end();
}

std::string vettedEncodings(std::string_view message) {
    std::string kept(message.substr(0, kEncodingsHeader));
    for (std::size_t at = kEncodingsHeader; at < message.size(); at += 4) {
        if (accepted(static_cast<std::int32_t>(number(message, at, 4)))) kept += message.substr(at, 4);
    }
    const std::size_t count = (kept.size() - kEncodingsHeader) / 4;
    kept[2] = static_cast<char>(count >> 8);
    kept[3] = static_cast<char>(count & 0xFF);
    return kept;
}

bool plausiblePixelFormat(std::string_view message) {
    const std::uint32_t bits = number(message, 4, 1);
    if (bits != 8 && bits != 16 && bits != 32) return false;
    return number(message, 14, 1) < bits && number(message, 15, 1) < bits && number(message, 16, 1) < bits;
}

}  // namespace

std::optional<std::size_t> vncMessageSize(VncStage stage, std::string_view bytes) {
    if (bytes.empty()) return 0;
    switch (stage) {
        case VncStage::Version:
            return bytes.substr(0, 4) == std::string_view("RFB ").substr(0, bytes.size())
                       ? std::optional<std::size_t>(12)
                       : std::nullopt;
        case VncStage::SecurityType:
        case VncStage::Initialisation:
            return 1;
        case VncStage::Authentication:
            return 16;
        case VncStage::Normal:
            break;
    }
    return normalMessageSize(bytes);
}

std::optional<std::string> vettedVncMessage(std::string_view message) {
    std::string vetted(message);
    switch (static_cast<unsigned char>(message[0])) {
        case SetPixelFormat:
            if (!plausiblePixelFormat(message)) return {};
            break;
        case SetEncodings:
            return vettedEncodings(message);
        case kPointerEvent:
            vetted[1] = static_cast<char>(vetted[1] & 1);
            break;
        default:
            break;
    }
    return vetted;
}

}  // namespace host
