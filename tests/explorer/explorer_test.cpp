// A person finds, opens and makes pictures.
#include "platform/host/explorer/explorer.h"

#include <gmock/gmock.h>

#include "files/scratch.h"
#include "platform/host/files/picture_file.h"
#include "platform/host/touch/pointer_event.h"
#include "support/test_desk.h"

namespace {

using namespace host;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

Point centre(const Tile& tile) { return {tile.area.x + tile.area.w / 2, tile.area.y + tile.area.h / 2}; }

constexpr const char* kDamaged = "BM and nothing more";

struct ExplorerTest : testing::Test {
    /// A small picture of that age; `contents` stands in for one that is damaged.
    void addPicture(const std::string& name, int age, const std::string& contents = {}, int width = 8) {
        const fs::path file = folder_.write("My pictures/" + name, contents);
        std::string error;
        EXPECT_TRUE(!contents.empty() || savePicture(file, *scratch::noise(width, 60, 24), error, Sync::No)) << error;
        fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::minutes(age));
    }

    void events(std::initializer_list<std::pair<int, Point>> list) {
        for (const auto& [type, at] : list) EXPECT_EQ(explorer_.handle(type, at.x, at.y), 1);
    }
    void tap(const Tile& tile) { events({{kPointerDown, centre(tile)}, {kPointerUp, centre(tile)}}); }

    std::vector<Tile> tiles(Tile::Kind kind) {
        std::vector<Tile> found = explorer_.tiles();
        std::erase_if(found, [kind](const Tile& tile) { return tile.kind != kind; });
        return found;
    }
    Tile first(Tile::Kind kind) { return tiles(kind).at(0); }

    const Framebuffer& shown() { return desk_.panel.shown(); }

    TemporaryFolder folder_;
    Storage storage_{folder_.path()};
    std::vector<std::string> done_;
    TestDesk desk_;
    Keeper keeper_{storage_, desk_.languages, desk_.text, desk_.screen};
    Explorer explorer_{
        desk_.desk, storage_, keeper_,
        ExplorerActions{[this] { done_.emplace_back("create"); }, [this](const auto& path) { done_.push_back(path); },
                        [this] { done_.emplace_back("leave"); }}};
};

TEST_F(ExplorerTest, PagesHoldTwelveTilesAndNeitherLoseNorRepeatAPicture) {
    for (int i = 0; i < 24; ++i) addPicture(std::to_string(i) + ".bmp", i);
    explorer_.show();
    int seen = 0;
    for (const std::size_t pictures : {11U, 12U, 1U}) {
        EXPECT_EQ(tiles(Tile::Kind::NewPicture).size(), pictures == 11 ? 1U : 0U);
        EXPECT_EQ(tiles(Tile::Kind::NextPage).size(), pictures > 1 ? 1U : 0U);
        EXPECT_EQ(tiles(Tile::Kind::Picture).size(), pictures);
        for (const Tile& tile : tiles(Tile::Kind::Picture))
            EXPECT_EQ(tile.devicePath, "/mnt/ext1/My pictures/" + std::to_string(seen++) + ".bmp");
        if (pictures > 1) tap(first(Tile::Kind::NextPage));
    }
    EXPECT_THAT(done_, IsEmpty());
}

TEST_F(ExplorerTest, APressLiftedInItsOwnTileCreatesOpensOrLeaves) {
    addPicture("a.bmp", 1);
    explorer_.show();
    const Point create = centre(first(Tile::Kind::NewPicture)), picture = centre(first(Tile::Kind::Picture));
    events({{kPointerUp, create}});
    events({{kPointerDown, {0, 0}}, {kPointerUp, picture}});
    events({{kPointerDown, picture}, {kPointerUp, create}});
    events({{kPointerDown, picture}, {kPointerMove, create}, {kPointerReport, picture}, {kPointerUp, picture}});
    events({{kPointerDown, picture}, {23, {}}, {kPointerUp, picture}});
    EXPECT_THAT(done_, IsEmpty());
    const Point near{picture.x + 9, picture.y};
    events({{kPointerDown, picture}, {kPointerMove, near}, {kPointerUp, near}});
    tap(first(Tile::Kind::NewPicture));
    tap(first(Tile::Kind::Exit));
    EXPECT_THAT(done_, ElementsAre("/mnt/ext1/My pictures/a.bmp", "create", "leave"));
    EXPECT_EQ(explorer_.handle(99, 0, 0), 0);
}

TEST_F(ExplorerTest, ADamagedPictureIsShownAsSuchAndNeverOpened) {
    addPicture("a.bmp", 1, kDamaged);
    testing::internal::CaptureStderr();
    explorer_.show();
    explorer_.show();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::MatchesRegex("[^\n]*a.bmp: [^\n]*\n"));
    const Tile tile = first(Tile::Kind::Picture);
    const Framebuffer before = shown();
    tap(tile);
    EXPECT_FALSE(shown() == before) << "a notice tells why";
    EXPECT_THAT(done_, IsEmpty());
    addPicture("a.bmp", 1);  // mended since it was shown
    tap(tile);
    EXPECT_THAT(done_, ElementsAre("/mnt/ext1/My pictures/a.bmp"));
    explorer_.show();
    addPicture("a.bmp", 1, kDamaged);
    tap(tile);
    fs::remove(folder_ / "My pictures/a.bmp");
    tap(tile);
    EXPECT_EQ(done_.size(), 1U);
    EXPECT_THAT(tiles(Tile::Kind::Picture), IsEmpty());
}

TEST_F(ExplorerTest, TellsWhatHasHappenedUntilThePersonDoesSomething) {
    addPicture("a.bmp", 1);
    explorer_.show();
    const Framebuffer before = shown();
    ASSERT_EQ(keeper_.remove("/mnt/ext1/My pictures/a.bmp", Removal::Ordered), 0);
    explorer_.show();
    EXPECT_THAT(tiles(Tile::Kind::Picture), IsEmpty());
    explorer_.show();
    tap(first(Tile::Kind::Notice));
    EXPECT_TRUE(shown() == before) << "the picture is back, and nothing is left to tell";
    EXPECT_THAT(tiles(Tile::Kind::Notice), IsEmpty());
    keeper_.remove("/mnt/ext1/My pictures/a.bmp", Removal::Ordered);
    explorer_.show();
    tap(first(Tile::Kind::NewPicture));
    explorer_.show();
    EXPECT_THAT(tiles(Tile::Kind::Notice), IsEmpty());
}

/// Bytes that an action reads by system calls.
long long readBy(const std::function<void()>& action) {
    const auto soFar = [] { return std::stoll(contentOf("/proc/self/io").substr(sizeof "rchar:")); };
    const long long before = soFar();
    action();
    return soFar() - before;
}

TEST_F(ExplorerTest, OnlyThePageOfAThousandIsReadAndOnlyOnce) {
    const auto show = [this] { explorer_.show(); };
    show();  // reads fonts and icons
    for (int i = 0; i < 1000; ++i) addPicture(std::to_string(i) + ".bmp", i, {}, i < 40 ? 1000 : 8);
    const auto size = static_cast<long long>(fs::file_size(folder_ / "My pictures/0.bmp"));
    EXPECT_EQ(readBy(show) / size, 11);
    EXPECT_EQ(readBy(show) / size, 0) << "nothing has changed";
}

}  // namespace
