// Thumbnails show the whole picture, evenly.
#include "platform/host/explorer/thumbnails.h"

#include <gmock/gmock.h>

#include "files/scratch.h"
#include "support/area_mean.h"

namespace {

using host::BitmapPtr;

BitmapPtr copyOf(const bitmap_s& picture) {
    BitmapPtr copy = host::makeBitmap(picture.width, picture.height, picture.depth);
    std::memcpy(bitmap_pixels(copy.get()), bitmap_pixels(&picture), host::pixelBytes(picture));
    return copy;
}

TEST(Thumbnail, EachPixelIsTheMeanOfWhatItCovers) {
    for (const int depth : {8, 24}) {
        for (const host::Size to : {host::Size{300, 75}, {28, 7}, {92, 23}}) {
            const BitmapPtr picture = scratch::noise(400, 100, depth);
            const int channels = depth / 8;
            // Paper between the marks, as drawings have it.
            for (int y = 0; y < 100; ++y) {
                std::uint8_t* row = host::bitmapRow(*picture, y);
                for (int x = 0; x < 400; ++x) {
                    if (y < 35 || x / 61 % 2 == 0) std::fill_n(row + x * channels, channels, std::uint8_t{0xFF});
                }
            }
            const BitmapPtr small = host::shrunk(copyOf(*picture), to);
            ASSERT_EQ(small->height, to.h);
            for (int i = 0; i < small->scanline * small->height; ++i) {
                const host::Point at{i % small->scanline / channels, i / small->scanline};
                const auto stored = [&](int x, int y) {
                    return host::bitmapRow(*picture, y)[x * channels + i % small->scanline % channels];
                };
                const double mean = areaMean({400, 100}, {small->width, small->height}, at, stored);
                ASSERT_NEAR(bitmap_pixels(small.get())[i], mean, 1.5) << to.w << " " << i;
            }
        }
    }
    BitmapPtr white = host::makeBitmap(1404, 1764, 24);
    std::memset(bitmap_pixels(white.get()), 0xFF, host::pixelBytes(*white));
    EXPECT_THAT(scratch::pixels(*host::shrunk(std::move(white), {299, 376})), testing::Each(255));
}

}  // namespace
