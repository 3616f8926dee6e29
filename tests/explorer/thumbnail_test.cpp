// Thumbnails show the whole picture, evenly.
#include "platform/host/explorer/thumbnails.h"

#include <gmock/gmock.h>

#include "files/scratch.h"
#include "platform/host/screen/area_scaler.h"

namespace {

using host::BitmapPtr;

/// Noise on paper, as drawings have it: white above and on the left.
BitmapPtr drawing(int depth) {
    BitmapPtr picture = scratch::noise(160, 16, depth);
    for (int y = 0; y < 16; ++y)
        std::memset(host::bitmapRow(*picture, y), 0xFF, picture->scanline * (y < 6 ? 8U : 5U) / 8);
    return picture;
}

TEST(Thumbnail, EachPixelIsTheMeanOfWhatItCovers) {
    for (const int channels : {1, 3})
        for (const host::Size to : {host::Size{120, 12}, {90, 9}, {70, 7}}) {
            const BitmapPtr large = drawing(8 * channels), small = host::shrunk(drawing(8 * channels), to);
            ASSERT_EQ((host::Size{small->width, small->height}), to);
            for (int i = 0; i < small->scanline * to.h; ++i) {
                const int x = i % small->scanline / channels, y = i / small->scanline;
                double sum = 0;
                // In steps that go into both sizes.
                for (int row = y * 16; row < (y + 1) * 16; ++row)
                    for (int column = x * 160; column < (x + 1) * 160; ++column)
                        sum += host::bitmapRow(*large, row / to.h)[column / to.w * channels + i % channels];
                ASSERT_NEAR(bitmap_pixels(small.get())[i], sum / (160 * 16), 1.5) << to.w << " " << i;
            }
        }
    BitmapPtr white = host::makeBitmap(1404, 1764, 24);
    std::memset(bitmap_pixels(white.get()), 0xFF, host::pixelBytes(*white));
    EXPECT_THAT(scratch::pixels(*host::shrunk(std::move(white), {299, 376})), testing::Each(255));
}

}  // namespace
