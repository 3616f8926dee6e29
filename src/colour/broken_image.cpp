#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/bitmap.h"

namespace colour {

constexpr int kSide = 48;   // pixels
constexpr int kDepth = 4;   // bits per pixel
constexpr int kMargin = 7;  // rows
constexpr int kScanline = kSide * kDepth / 8;

/// A toolkit bitmap record with its pixels.
struct BrokenImage {
    bitmap_s header;
    std::array<std::uint8_t, std::size_t{kScanline} * kSide> pixels;
};

static_assert(sizeof(BrokenImage) == 1160, "the header and 48 rows of 24 bytes, with nothing between them");

/// The sixteen greys, from black to white.
constexpr std::string_view kGreys = "@%#W8B0Xok*=+:. ";

/// A torn photograph: the sun over two mountains. The rows above and below it are white.
constexpr std::string_view kPicture =
    "    :0W##################X    *##########W0:    "
    "   :W###################W:    8############W:   "
    "   0####################o    *##############0   "
    "   W##o+::::::::::::::::     :::::::::::+o##W   "
    "   ###+::::::::::::::::.    .::::::::::::+###   "
    "   ###:::::::::::::::::     ::::::::::::::###   "
    "   ###::::::.  .::::::.    .::::::::::::::###   "
    "   ###:::::      :::::     :::::::::::::::###   "
    "   ###::::.      .:::.    ::::::::::::::::###   "
    "   ###::::        :::     ::::::::::::::::###   "
    "   ###::::        ::.    :::::::::::::::::###   "
    "   ###::::.      .::     :::::::::::::::::###   "
    "   ###:::::      ::.     .::::::::::::::::###   "
    "   ###::::::.  .::::.     .:::::::::::::::###   "
    "   ###:::::::::::::::.      :::::..:::::::###   "
    "   ###::::::::::::::::.      :::....::::::###   "
    "   ###::::::::::::::::::      ::.....:::::###   "
    "   ###++++++++++++++++++:      ......:++++###   "
    "   ###+++++++=oo+++++++++:    :+..kk:.*+++###   "
    "   ###++++++=XBBo++++++++.    *o*koooko=++###   "
    "   ###+++++=XBBBBo+++++++    .oooooooooo=+###   "
    "   ###++++=0BBBBBBo+++++:    *ooooooooook=###   "
    "   ###+++*0BBBBBBBBo++++    .oooooooooooo*###   "
    "   ###++*BBBBBBBBBBBo++:    =ooooooooooooo###   "
    "   ###+kBBBBBBBBBBBBBo+.    oooooooooooooo###   "
    "   ###kBBBBBBBBBBBBBBB*    +oooooooooooooo###   "
    "   ###BBBBBBBBBBBBBBBB+    koooooooooooooo###   "
    "   ###BBBBBBBBBBBBBBB0    :ooooooooooooooo###   "
    "   ###BBBBBBBBBBBBBBB=    *ooooooooooooooo###   "
    "   ###BBBBBBBBBBBBBB0    :Xooooooooooooooo###   "
    "   W##BBBBBBBBBBBBBB*    kBXooooooooooooo0##W   "
    "   0###############W.   .W##################0   "
    "   :W##############X    o##################W:   "
    "    :0W############+   .W################W0:    ";
static_assert(kPicture.size() == std::size_t{kSide - 2 * kMargin} * kSide &&
              kPicture.find_first_not_of(kGreys) == kPicture.npos);

constexpr BrokenImage pack() {
    BrokenImage image{{kSide, kSide, kDepth, kScanline}, {}};
    image.pixels.fill(0xFF);
    for (std::size_t i = 0; i < kPicture.size(); i += 2) {
        // The left pixel in the high bits.
        const std::size_t greys = kGreys.find(kPicture[i]) << 4 | kGreys.find(kPicture[i + 1]);
        image.pixels[std::size_t{kMargin} * kScanline + i / 2] = static_cast<std::uint8_t>(greys);
    }
    return image;
}

}  // namespace colour

/// The picture that stands for one that cannot be shown. The application never reads it: the platform finds it by
/// this name among the program's dynamic symbols and uses it where its theme has no "broken_image".
extern "C" {
extern const colour::BrokenImage def_broken_image;
constinit const colour::BrokenImage def_broken_image = colour::pack();
}
