#include "platform/host/base/utf8.h"

namespace host {
namespace {

/// What a lead byte announces. The range of the second byte is narrower than that of the others for leads that
/// could begin an overlong form, a surrogate or a character beyond U+10FFFF.
struct Lead {
    std::size_t length = 0;
    unsigned char secondFrom = 0x80;
    unsigned char secondTo = 0xBF;
};

Lead leadOf(unsigned char byte) {
    if (byte <= 0x7F) return {1};
    if (byte >= 0xC2 && byte <= 0xDF) return {2};
    if (byte == 0xE0) return {3, 0xA0, 0xBF};
    if (byte == 0xED) return {3, 0x80, 0x9F};
    if (byte >= 0xE1 && byte <= 0xEF) return {3};
    if (byte == 0xF0) return {4, 0x90, 0xBF};
    if (byte >= 0xF1 && byte <= 0xF3) return {4};
    if (byte == 0xF4) return {4, 0x80, 0x8F};
    return {};
}

}  // namespace

Utf8Sequence firstSequence(std::string_view text) {
    const Lead lead = leadOf(static_cast<unsigned char>(text.front()));
    std::size_t count = 1;
    while (count < lead.length && count < text.size()) {
        const auto byte = static_cast<unsigned char>(text[count]);
        const unsigned char from = count == 1 ? lead.secondFrom : 0x80;
        const unsigned char to = count == 1 ? lead.secondTo : 0xBF;
        if (byte < from || byte > to) break;
        ++count;
    }
    return {count, count == lead.length};
}

std::string repairedUtf8(std::string_view text) {
    std::string repaired;
    repaired.reserve(text.size());
    while (!text.empty()) {
        const auto [bytes, whole] = firstSequence(text);
        repaired += whole && text.front() != '\0' ? text.substr(0, bytes) : kReplacementCharacter;
        text.remove_prefix(bytes);
    }
    return repaired;
}

}  // namespace host
