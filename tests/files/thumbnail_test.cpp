// Thumbnails show the whole picture, evenly.
#include "platform/host/files/thumbnail.h"

#include <gmock/gmock.h>

#include "files/scratch.h"
#include "platform/host/files/picture_file.h"
#include "support/area_mean.h"

namespace {

using host::BitmapPtr;

class Thumbnail : public testing::Test {
protected:
    BitmapPtr thumbnail(const bitmap_s& picture, host::Size room, const char* name = "a.bmp") {
        EXPECT_TRUE(host::savePicture(folder_ / name, picture, error_)) << error_;
        return host::loadThumbnail(folder_ / name, room, error_);
    }

    scratch::Folder folder_;
    std::string error_;
};

TEST_F(Thumbnail, EachPixelIsTheMeanOfWhatItCovers) {
    for (const int depth : {8, 24}) {
        for (const auto& [to, name] : {std::pair(host::Size{30, 50}, "a.bmp"), std::pair(host::Size{13, 21}, "a.bmp"),
                                       std::pair(host::Size{13, 21}, "a.png")}) {
            const BitmapPtr picture = scratch::noise(60, 100, depth);
            const BitmapPtr small = thumbnail(*picture, to, name);
            ASSERT_EQ(small->height, to.h);
            const int channels = depth / 8;
            for (int i = 0; i < small->scanline * small->height; ++i) {
                const host::Point at{i % small->scanline / channels, i / small->scanline};
                const auto stored = [&](int x, int y) {
                    return host::bitmapRow(*picture, y)[x * channels + i % small->scanline % channels];
                };
                const double mean = areaMean({60, 100}, {small->width, small->height}, at, stored);
                ASSERT_NEAR(bitmap_pixels(small.get())[i], mean, 1.5) << name << " " << i;
            }
        }
    }
    const BitmapPtr white = host::makeBitmap(1404, 1764, 24);
    std::memset(bitmap_pixels(white.get()), 0xFF, host::pixelBytes(*white));
    EXPECT_THAT(scratch::pixels(*thumbnail(*white, {299, 376})), testing::Each(255));
}

}  // namespace
