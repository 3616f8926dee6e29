#include "platform/host/panel/panel.h"

#include <gmock/gmock.h>

#include <climits>

#include "platform/host/screen/screen.h"
#include "support/recording_display.h"

namespace host {
namespace {

using testing::ElementsAre;

constexpr Rect kAll{0, 0, 40, 30};

struct PanelTest : testing::Test {
    void use(PixelFormat format) {
        screen.emplace(kAll.size(), format);
        panel.emplace(screen->pixels(), display, clock);
    }

    RecordingDisplay display;
    Clock clock{0L};
    std::optional<Screen> screen;
    std::optional<Panel> panel;
};

TEST_F(PanelTest, PixelsThatAreNotRefreshedStayStale) {
    use(PixelFormat::Rgb24);
    screen->fill(kAll, 0x123456);
    panel->update({10, 5, 7, 3}, Waveform::Regular);

    Screen expected(kAll.size(), PixelFormat::Rgb24);
    expected.fill({10, 5, 7, 3}, 0x123456);
    EXPECT_EQ(panel->shown(), expected.pixels());
    EXPECT_THAT(display.areas, ElementsAre(Rect{10, 5, 7, 3}));

    screen->fill(kAll, kWhite);
    EXPECT_EQ(panel->shown(), expected.pixels()) << "drawing alone changes nothing on the panel";
    panel->update(kAll, Waveform::Full);
    EXPECT_EQ(panel->shown(), screen->pixels());
    EXPECT_FALSE(panel->nextStep()) << "all is done at once";
}

TEST_F(PanelTest, FastShowsEveryPenColourAsInk) {
    const std::vector<Rgb> colours = {kBlack, 0xFF0000, 0x0000FF, 0x00FF00, 0xFF00FF, 0x00FFFF, 0xFFFF00};
    const std::vector<Rgb> greys = {kBlack, 0x222222, 0x444444, 0x666666, 0x999999, 0xBBBBBB, 0xDDDDDD};
    for (const PixelFormat format : {PixelFormat::Rgb24, PixelFormat::Grey8}) {
        use(format);
        Screen expected(kAll.size(), format);
        int row = 0;
        for (const Rgb ink : format == PixelFormat::Rgb24 ? colours : greys) {
            screen->fill({3, row, 5, 1}, ink);
            expected.fill({3, row++, 5, 1}, kBlack);
        }
        // The faint rim of antialiasing stays paper.
        screen->fill({20, 0, 5, 5}, 0xEEEEEE);
        panel->update(kAll, Waveform::Fast);
        EXPECT_EQ(panel->shown(), expected.pixels()) << "format " << static_cast<int>(format);
    }
}

TEST_F(PanelTest, AreasAreClippedToTheScreen) {
    const std::pair<Rect, std::vector<Rect>> cases[] = {
        {{-5, -5, 10, 10}, {{0, 0, 5, 5}}},
        {{-1, 3, INT_MAX, 1}, {{0, 3, 40, 1}}},
        {{INT_MAX, INT_MAX, INT_MAX, INT_MAX}, {}},
        {{40, 0, 1, 1}, {}},
        {{5, 5, 4, -3}, {}},
    };
    use(PixelFormat::Grey8);
    for (const auto& [asked, shown] : cases) {
        for (const Waveform waveform : {Waveform::Fast, Waveform::Regular, Waveform::Full}) {
            display.areas.clear();
            panel->update(asked, waveform);
            EXPECT_EQ(display.areas, shown) << asked.x << ' ' << asked.y;
        }
    }
}

}  // namespace
}  // namespace host
