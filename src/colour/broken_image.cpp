#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/bitmap.h"

namespace colour {

constexpr int kSide = 48;  // pixels
constexpr int kDepth = 4;  // bits per pixel
constexpr int kScanline = kSide * kDepth / 8;

/// A toolkit bitmap record with its pixels.
struct BrokenImage {
    bitmap_s header;
    std::array<std::uint8_t, std::size_t{kScanline} * kSide> pixels;
};

static_assert(sizeof(BrokenImage) == 1160, "the header and 48 rows of 24 bytes, with nothing between them");

/// The sixteen greys, from black to white.
constexpr std::string_view kGreys = "@%#W8B0Xok*=+:. ";

/// A torn photograph: the sun over two mountains.
constexpr std::string_view kPicture =
    "                                                "
    "                                                "
    "                                                "
    "                                                "
    "                                                "
    "                                                "
    "                                                "
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
    "    :0W############+   .W################W0:    "
    "                                                "
    "                                                "
    "                                                "
    "                                                "
    "                                                "
    "                                                "
    "                                                ";
static_assert(kPicture.size() == std::size_t{kSide} * kSide && kPicture.find_first_not_of(kGreys) == kPicture.npos);

constexpr BrokenImage pack() {
    BrokenImage image{{kSide, kSide, kDepth, kScanline}, {}};
    for (std::size_t i = 0; i < kPicture.size(); ++i) {
        const std::size_t grey = kGreys.find(kPicture[i]);
        const std::size_t shift = i % 2 == 0 ? 4 : 0;  // the left pixel in the high bits
        image.pixels[i / 2] |= static_cast<std::uint8_t>(grey << shift);
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
