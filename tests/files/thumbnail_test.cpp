// Thumbnails show the whole picture, evenly.
#include "platform/host/files/thumbnail.h"

#include <gtest/gtest.h>

#include "files/scratch.h"
#include "platform/host/files/picture_file.h"

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

TEST_F(Thumbnail, KeepsItsShapeAndIsNeverEnlarged) {
    const BitmapPtr picture = scratch::noise(140, 176, 24);
    for (const auto& [room, size] : std::vector<std::pair<host::Size, host::Size>>{{{70, 88}, {70, 88}},
                                                                                   {{1000, 88}, {70, 88}},
                                                                                   {{35, 500}, {35, 44}},
                                                                                   {{1, 1}, {1, 1}},
                                                                                   {{140, 176}, {140, 176}}}) {
        const BitmapPtr small = thumbnail(*picture, room);
        ASSERT_NE(small, nullptr) << error_;
        EXPECT_EQ((host::Size{small->width, small->height}), size);
    }
    EXPECT_TRUE(scratch::same(thumbnail(*picture, {500, 500}).get(), picture.get()));
    const BitmapPtr line = thumbnail(*scratch::noise(2000, 1, 8), {100, 100});
    EXPECT_EQ((host::Size{line->width, line->height}), (host::Size{100, 1}));
}

TEST_F(Thumbnail, EachPixelIsTheMeanOfWhatItCovers) {
    for (const int depth : {8, 24}) {
        for (const host::Size to : {host::Size{30, 50}, host::Size{13, 21}}) {
            const BitmapPtr picture = scratch::noise(60, 100, depth);
            for (const char* name : {"a.bmp", "a.png"}) {
                const BitmapPtr small = thumbnail(*picture, to, name);
                ASSERT_EQ(small->height, to.h);
                const int channels = depth / 8;
                const double across = 60.0 / small->width;
                const double down = 100.0 / small->height;
                for (int y = 0; y < small->height; ++y) {
                    for (int i = 0; i < small->scanline; ++i) {
                        const int x = i / channels;
                        double sum = 0;
                        for (int row = 0; row < 100; ++row) {
                            for (int column = 0; column < 60; ++column) {
                                const double w =
                                    std::min((x + 1) * across, column + 1.0) - std::max(x * across, 1.0 * column);
                                const double h = std::min((y + 1) * down, row + 1.0) - std::max(y * down, 1.0 * row);
                                if (w <= 0 || h <= 0) continue;
                                sum += w * h * host::bitmapRow(*picture, row)[column * channels + i % channels];
                            }
                        }
                        ASSERT_NEAR(host::bitmapRow(*small, y)[i], sum / (across * down), 1.5) << name << x << " " << y;
                    }
                }
            }
        }
    }
}

TEST_F(Thumbnail, WhiteStaysWhite) {
    const BitmapPtr white = host::makeBitmap(1404, 1764, 24);
    std::memset(bitmap_pixels(white.get()), 0xFF, host::pixelBytes(*white));
    const BitmapPtr small = thumbnail(*white, {299, 376});
    EXPECT_TRUE(std::all_of(bitmap_pixels(small.get()), bitmap_pixels(small.get()) + host::pixelBytes(*small),
                            [](std::uint8_t value) { return value == 255; }));
}

TEST_F(Thumbnail, ADamagedPictureHasNone) {
    scratch::write(folder_ / "a.bmp", {'B', 'M', 1, 2, 3});
    EXPECT_EQ(host::loadThumbnail(folder_ / "a.bmp", {10, 10}, error_), nullptr);
    EXPECT_NE(error_, "");
}

}  // namespace
