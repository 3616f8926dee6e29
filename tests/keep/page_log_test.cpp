// What stands in a recovery file is read back, whatever has happened to its end.
#include "platform/host/keep/page_log.h"

#include <gtest/gtest.h>

#include "files/scratch.h"
#include "platform/host/files/picture_file.h"
#include "platform/host/keep/journal.h"
#include "platform/host/keep/kept_picture.h"
#include "platform/host/keep/recovery.h"

using namespace host;

namespace {

constexpr int kPages = 12;

/// The page with a few rectangles more than the one before.
SharedPage changed(const bitmap_s& before, unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    BitmapPtr page = rotateBitmap(before, 0);
    for (int i = 0; i < 3; ++i) {
        const int top = below(page->height);
        const int left = below(page->scanline);
        for (int y = top; y < std::min<int>(top + below(9), page->height); ++y)
            std::fill_n(bitmapRow(*page, y) + left, below(page->scanline - left) + 1,
                        static_cast<std::uint8_t>(below(256)));
    }
    return page;
}

struct PageLogTest : testing::Test {
    PageLogTest() {
        std::string reason;
        const BitmapPtr white = makeBitmap(47, 33, 24);
        std::fill_n(bitmap_pixels(white.get()), pixelBytes(*white), std::uint8_t{0xFF});
        PageLog log(file_, 7, "a picture", *white, reason);
        SharedPage page = changed(*white, 0);
        for (unsigned i = 1; i <= kPages; ++i) {
            ends_.push_back(log.size());
            EXPECT_TRUE(log.add(page, i == 2, 1 << 20, reason)) << reason;
            pages_.push_back(page);
            page = changed(*page, i);
        }
        EXPECT_EQ(log.size(), std::filesystem::file_size(file_));
        ends_.push_back(log.size());
    }

    /// What is read from these bytes.
    LoggedPage read(const std::string& bytes) { return readPageLog(folder_.write("copy", bytes)); }
    /// The page that is whole in so many bytes; -1: none.
    int lastIn(std::size_t bytes) const {
        return static_cast<int>(std::upper_bound(ends_.begin(), ends_.end(), bytes) - ends_.begin()) - 2;
    }
    bool isPage(const LoggedPage& logged, int index) const {
        if (index < 0) return logged.page == nullptr;
        return logged.page != nullptr && samePixels(*logged.page, *pages_[static_cast<std::size_t>(index)]) &&
               logged.asLoaded == (index == 1) && logged.number == 7 && logged.about == "a picture";
    }

    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "log";
    std::vector<SharedPage> pages_;
    std::vector<std::size_t> ends_;
};

TEST_F(PageLogTest, HoldsTheLastPageThatWasWrittenWhole) {
    const std::string whole = contentOf(file_);
    for (std::size_t length = 0; length <= whole.size(); length += length % 7 + 1)
        ASSERT_TRUE(isPage(read(whole.substr(0, length)), lastIn(length))) << length;
    EXPECT_TRUE(isPage(read(whole), kPages - 1));
    EXPECT_TRUE(isPage(read(whole + std::string(40, '\0')), kPages - 1)) << "room that was taken but never written";
}

TEST_F(PageLogTest, IsBegunAnewWhereItGrowsAndTheNewestCounts) {
    const std::filesystem::path picture = folder_ / "a.bmp";
    const std::filesystem::path stem = folder_ / (".recovery/" + recoveryName(picture));
    std::filesystem::create_directory(folder_ / ".recovery");
    const std::string about = KeptPicture{.path = picture}.inWords();
    bool taken = false;
    for (const int pages : {1, 2, 60, 61, 62, 63, 64, 65}) {
        SharedPage page = pages_[0];
        {
            Journal journal(stem, std::move(*lockFile(stem, taken)), picture);
            for (int i = 0; i < pages; ++i) {
                page = changed(*page, static_cast<unsigned>(i));
                journal.note(page, false, about);
                // Some are passed over by the next.
                EXPECT_TRUE(i % 5 == 0 || journal.settle());
            }
            EXPECT_FALSE(lockFile(stem, taken).has_value());
            EXPECT_TRUE(taken);
        }
        for (const char* log : {".0", ".1"}) {
            const std::filesystem::path file = stem.string() + log;
            EXPECT_TRUE(!std::filesystem::exists(file) || std::filesystem::file_size(file) < 2 * pixelBytes(*page));
        }
        EXPECT_EQ(recoverPages(Storage(folder_.path())).size(), 1U);
        std::string error;
        const BitmapPtr found = loadPicture(picture, error);
        EXPECT_TRUE(found != nullptr && samePixels(*found, *page)) << pages << error;
        std::filesystem::remove(picture);
    }
    Journal journal(stem, std::move(*lockFile(stem, taken)), picture);
    for (const SharedPage& page : pages_) journal.note(page, false, about);
    journal.discard();
    EXPECT_TRUE(std::filesystem::is_empty(folder_ / ".recovery"));
}

TEST_F(PageLogTest, NoticesADamagedRecord) {
    const std::string whole = contentOf(file_);
    for (std::size_t at = 0; at < whole.size(); at += 11) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x10);
        ASSERT_TRUE(isPage(read(damaged), lastIn(at))) << at;
    }
}

}  // namespace
