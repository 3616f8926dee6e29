#include "platform/host/base/utf8.h"

namespace host {

Utf8Sequence firstSequence(std::string_view text) {
    const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    // The second byte has a narrower range where an overlong form, a surrogate or a character beyond U+10FFFF could
    // begin.
    const unsigned char secondFrom = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char secondTo = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    std::size_t count = 1;
    while (count < length && count < text.size() && byte(count) >= (count == 1 ? secondFrom : 0x80) &&
           byte(count) <= (count == 1 ? secondTo : 0xBF))
        ++count;
    return {count, count == length};
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
