#include "platform/host/browser/browser_websocket.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace host {

namespace {

enum Opcode : unsigned char { Continuation = 0, Binary = 2, Close = 8, Ping = 9, Pong = 10 };

constexpr unsigned char kFinal = 0x80;
constexpr unsigned char kMasked = 0x80;
constexpr std::size_t kMaskSize = 4;
constexpr unsigned kShortLength = 125;  // longer payloads tell their length in 2 or 8 bytes more
constexpr unsigned kTwoByteLength = 126;
constexpr unsigned kEightByteLength = 127;

unsigned byteAt(const std::string& bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

unsigned opcodeOf(const std::string& header) { return byteAt(header, 0) & 0x0F; }

std::size_t lengthBytes(const std::string& header) {
    const unsigned length = byteAt(header, 1) & 0x7F;
    if (length == kTwoByteLength) return 2;
    return length == kEightByteLength ? 8 : 0;
}

std::uint64_t payloadLength(const std::string& header) {
    if (lengthBytes(header) == 0) return byteAt(header, 1) & 0x7F;
    std::uint64_t length = 0;
    for (std::size_t i = 2; i < 2 + lengthBytes(header); ++i) length = length << 8 | byteAt(header, i);
    return length;
}

std::string frame(Opcode opcode, std::string_view payload) {
    std::string framed(1, static_cast<char>(kFinal | opcode));
    int lengthSize = 0;
    if (payload.size() <= kShortLength) {
        framed += static_cast<char>(payload.size());
    } else if (payload.size() <= 0xFFFF) {
        framed += static_cast<char>(kTwoByteLength);
        lengthSize = 2;
    } else {
        framed += static_cast<char>(kEightByteLength);
        lengthSize = 8;
    }
    const std::uint64_t length = payload.size();
    for (int shift = 8 * (lengthSize - 1); shift >= 0; shift -= 8) framed += static_cast<char>(length >> shift & 0xFF);
    return framed.append(payload);
}

}  // namespace

std::string webSocketAccept(const std::string& key) {
    constexpr std::string_view kMagic = "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";  // RFC 6455, 1.3
    const std::string text = key + std::string(kMagic);
    GChecksum* checksum = g_checksum_new(G_CHECKSUM_SHA1);
    g_checksum_update(checksum, reinterpret_cast<const guchar*>(text.data()), static_cast<gssize>(text.size()));
    std::array<guint8, 20> digest{};
    gsize size = digest.size();
    g_checksum_get_digest(checksum, digest.data(), &size);
    g_checksum_free(checksum);
    gchar* encoded = g_base64_encode(digest.data(), size);
    std::string result = encoded;
    g_free(encoded);
    return result;
}

std::string webSocketFrame(std::string_view payload) { return frame(Binary, payload); }

WebSocketReader::Result WebSocketReader::read(std::string_view bytes) {
    Result result;
    while (!bytes.empty() && !result.closed) {
        if (remaining_ == 0) {
            readHeader(bytes[0], result);
            bytes.remove_prefix(1);
            continue;
        }
        const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(remaining_, bytes.size()));
        readPayload(bytes.substr(0, part), result);
        bytes.remove_prefix(part);
    }
    return result;
}

void WebSocketReader::readHeader(char byte, Result& result) {
    header_ += byte;
    if (header_.size() < 2) return;
    // A browser masks all that it sends; what does not is no browser.
    result.closed = (byteAt(header_, 1) & kMasked) == 0;
    if (header_.size() == 2 + lengthBytes(header_) + kMaskSize) beginFrame(result);
}

void WebSocketReader::beginFrame(Result& result) {
    const unsigned opcode = opcodeOf(header_);
    remaining_ = payloadLength(header_);
    maskAt_ = 0;
    ping_.clear();
    const bool known = opcode == Continuation || opcode == Binary || opcode == Ping || opcode == Pong;
    const bool tooLong = opcode >= Close && remaining_ > kShortLength;
    result.closed |= !known || tooLong;
    if (remaining_ == 0) readPayload({}, result);
}

std::string WebSocketReader::unmasked(std::string_view bytes) {
    const std::size_t mask = header_.size() - kMaskSize;
    std::string plain(bytes);
    for (char& byte : plain) byte = static_cast<char>(byte ^ header_[mask + maskAt_++ % kMaskSize]);
    return plain;
}

void WebSocketReader::readPayload(std::string_view bytes, Result& result) {
    remaining_ -= bytes.size();
    const unsigned opcode = opcodeOf(header_);
    if (opcode <= Binary) result.payload += unmasked(bytes);
    if (opcode == Ping) ping_ += unmasked(bytes);
    if (remaining_ > 0) return;
    if (opcode == Ping) result.reply += frame(Pong, ping_);
    header_.clear();
}

}  // namespace host
