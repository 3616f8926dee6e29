#include <qrencode.h>

#include <memory>

#include "platform/host/browser/addresses.h"

namespace host {

namespace {

constexpr int kQuietZone = 4;  // modules; cameras look for it
constexpr const char* kBlackOnWhite = "\x1b[30;107m";
constexpr const char* kPlain = "\x1b[0m";

}  // namespace

// A character cell is twice as high as wide: it shows two modules.
std::string qrCode(const std::string& text) {
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(QRcode_encodeString8bit(text.c_str(), 0, QR_ECLEVEL_L),
                                                               QRcode_free);
    if (code == nullptr) return {};
    const auto dark = [&code](int x, int y) {
        if (x < 0 || y < 0 || x >= code->width || y >= code->width) return false;
        return (code->data[y * code->width + x] & 1) != 0;
    };
    std::string lines;
    for (int y = -kQuietZone; y < code->width + kQuietZone; y += 2) {
        lines += kBlackOnWhite;
        for (int x = -kQuietZone; x < code->width + kQuietZone; ++x) {
            const bool below = dark(x, y + 1);
            lines += dark(x, y) ? (below ? "█" : "▀") : (below ? "▄" : " ");
        }
        lines.append(kPlain).append("\n");
    }
    return lines;
}

}  // namespace host
