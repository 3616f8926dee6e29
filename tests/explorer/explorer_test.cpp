// A person finds, opens and makes pictures.
#include "platform/host/explorer/explorer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "files/scratch.h"
#include "platform/host/files/picture_file.h"
#include "platform/host/touch/pointer_event.h"
#include "support/test_desk.h"

namespace {

using namespace host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

Point centre(const Tile& tile) { return {tile.area.x + tile.area.w / 2, tile.area.y + tile.area.h / 2}; }

class ExplorerTest : public testing::Test {
protected:
    void start() {
        desk_ = std::make_unique<TestDesk>();
        const ExplorerActions actions{[this] { done_.emplace_back("create"); },
                                      [this](const auto& path) { done_.push_back(path); },
                                      [this] { done_.emplace_back("leave"); }, [this] { return saveFailed_; }};
        explorer_ = std::make_unique<Explorer>(desk_->desk, storage_, actions);
        explorer_->show();
    }

    /// A small picture of that age; `contents` stands in for one that is damaged.
    void addPicture(const std::string& name, int age, const std::string& contents = {}, int width = 8) {
        const fs::path file = folder_.write("My pictures/" + name, contents);
        std::string error;
        const BitmapPtr picture = scratch::noise(width, 60, 24);
        ASSERT_TRUE(!contents.empty() || savePicture(file, *picture, error, Sync::No)) << error;
        fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::minutes(age));
    }

    void events(std::initializer_list<std::pair<int, Point>> list) {
        for (const auto& [type, at] : list) EXPECT_EQ(explorer_->handle(type, at.x, at.y), 1);
    }
    void tap(const Tile& tile) { events({{kPointerDown, centre(tile)}, {kPointerUp, centre(tile)}}); }

    std::vector<Tile> tiles(Tile::Kind kind) {
        std::vector<Tile> found = explorer_->tiles();
        std::erase_if(found, [kind](const Tile& tile) { return tile.kind != kind; });
        return found;
    }
    bool has(Tile::Kind kind) { return !tiles(kind).empty(); }
    Tile only(Tile::Kind kind) { return tiles(kind).at(0); }

    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const Tile& tile : tiles(Tile::Kind::Picture)) all.push_back(fs::path(tile.devicePath).filename());
        return all;
    }

    TemporaryFolder folder_;
    Storage storage_{folder_.path()};
    std::unique_ptr<TestDesk> desk_;
    std::unique_ptr<Explorer> explorer_;
    std::vector<std::string> done_;
    bool saveFailed_ = false;
};

TEST_F(ExplorerTest, TapsCreateOpenAndLeave) {
    addPicture("old.bmp", 9);
    addPicture("new.png", 1);
    start();
    EXPECT_THAT(names(), ElementsAre("new.png", "old.bmp"));
    tap(only(Tile::Kind::NewPicture));
    tap(tiles(Tile::Kind::Picture)[1]);
    tap(only(Tile::Kind::Exit));
    EXPECT_THAT(done_, ElementsAre("create", "/mnt/ext1/My pictures/old.bmp", "leave"));
    EXPECT_FALSE(has(Tile::Kind::NextPage));
    EXPECT_FALSE(has(Tile::Kind::PreviousPage));
}

TEST_F(ExplorerTest, PagesHoldTwelveTilesAndNeitherLoseNorRepeatAPicture) {
    for (int i = 0; i < 24; ++i) addPicture(std::to_string(i) + ".bmp", i);
    start();
    std::vector<std::string> seen;
    for (const std::size_t pictures : {11U, 12U, 1U}) {
        EXPECT_EQ(has(Tile::Kind::NewPicture), pictures == 11);
        EXPECT_EQ(has(Tile::Kind::NextPage), pictures > 1);
        EXPECT_EQ(names().size(), pictures);
        for (const std::string& name : names()) seen.push_back(name);
        if (has(Tile::Kind::NextPage)) tap(only(Tile::Kind::NextPage));
    }
    for (std::size_t i = 0; i < 24; ++i) EXPECT_EQ(seen.at(i), std::to_string(i) + ".bmp");
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(ExplorerTest, OnlyAPressLiftedInItsOwnTileCounts) {
    addPicture("a.bmp", 1);
    start();
    const Point create = centre(only(Tile::Kind::NewPicture));
    const Point picture = centre(only(Tile::Kind::Picture));
    events({{kPointerUp, create}});
    events({{kPointerDown, {0, 0}}, {kPointerUp, picture}});
    events({{kPointerDown, picture}, {kPointerUp, create}});
    events({{kPointerDown, picture}, {kPointerMove, create}, {kPointerReport, picture}, {kPointerUp, picture}});
    events({{kPointerDown, picture}, {23, {}}, {kPointerUp, picture}});
    EXPECT_THAT(done_, IsEmpty());
    events({{kPointerDown, picture},
            {kPointerMove, {picture.x + 9, picture.y}},
            {kPointerUp, {picture.x + 9, picture.y}}});
    EXPECT_EQ(done_.size(), 1U);
    EXPECT_EQ(explorer_->handle(99, 0, 0), 0);
}

TEST_F(ExplorerTest, ADamagedPictureIsShownAsSuchAndNeverOpened) {
    addPicture("good.bmp", 2);
    addPicture("damaged.bmp", 1, "BM and nothing more");
    testing::internal::CaptureStderr();
    start();
    explorer_->show();
    const std::string errors = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    EXPECT_THAT(errors, HasSubstr("damaged.bmp: "));
    EXPECT_THAT(names(), ElementsAre("damaged.bmp", "good.bmp"));
    const Framebuffer before = desk_->screen.pixels();
    tap(tiles(Tile::Kind::Picture)[0]);
    EXPECT_THAT(done_, IsEmpty());
    EXPECT_FALSE(desk_->screen.pixels() == before) << "a notice tells why";
    EXPECT_TRUE(desk_->panel.shown() == desk_->screen.pixels());
    tap(tiles(Tile::Kind::Picture)[1]);
    EXPECT_EQ(done_.size(), 1U);
}

TEST_F(ExplorerTest, LooksAtAPictureOnceMoreBeforeItOpensIt) {
    addPicture("broken_since.bmp", 1);
    addPicture("gone_since.bmp", 2);
    addPicture("mended_since.bmp", 3, "BM and nothing more");
    start();
    const std::vector<Tile> listed = tiles(Tile::Kind::Picture);
    addPicture("broken_since.bmp", 1, "BM and nothing more");
    tap(listed[0]);
    EXPECT_THAT(done_, IsEmpty());
    fs::remove(folder_ / "My pictures/gone_since.bmp");
    tap(listed[1]);
    EXPECT_THAT(done_, IsEmpty());
    EXPECT_THAT(names(), ElementsAre("broken_since.bmp", "mended_since.bmp"));
    addPicture("mended_since.bmp", 3);
    tap(tiles(Tile::Kind::Picture)[1]);
    EXPECT_THAT(done_, ElementsAre(HasSubstr("mended_since.bmp")));
}

TEST_F(ExplorerTest, TellsThatAPictureWasNotSaved) {
    start();
    const Framebuffer before = desk_->screen.pixels();
    saveFailed_ = true;
    explorer_->show();
    EXPECT_FALSE(desk_->panel.shown() == before);
    saveFailed_ = false;
    explorer_->show();
    EXPECT_TRUE(desk_->panel.shown() == before);
}

/// Bytes that this process has read by system calls.
long long bytesRead() {
    std::ifstream counters("/proc/self/io");
    std::string name;
    long long value = 0;
    while (counters >> name >> value && name != "rchar:") {
    }
    return value;
}

TEST_F(ExplorerTest, OnlyThePageOfAThousandIsReadAndOnlyOnce) {
    for (int i = 0; i < 1000; ++i) addPicture(std::to_string(i) + ".bmp", i, {}, i < 40 ? 1000 : 8);
    const auto size = static_cast<long long>(fs::file_size(folder_ / "My pictures/0.bmp"));
    start();
    const auto readBy = [](const std::function<void()>& action) {
        const long long before = bytesRead();
        action();
        return bytesRead() - before;
    };
    const auto show = [this] { explorer_->show(); };
    const long long page = readBy([this] { start(); });
    EXPECT_GE(page, 11 * size);
    EXPECT_LT(page, 14 * size) << "eleven pictures, and fonts and icons";
    EXPECT_LT(readBy(show), size) << "nothing has changed";
}

}  // namespace
