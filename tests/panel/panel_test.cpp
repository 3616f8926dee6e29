#include "platform/host/panel/panel.h"

#include <gmock/gmock.h>

#include <climits>

#include "panel/paint.h"
#include "support/recording_display.h"

namespace host {
namespace {

using testing::ElementsAre;

struct PanelTest : testing::Test {
    void use(PixelFormat format) {
        screen.emplace(Size{40, 30}, format);
        panel.emplace(*screen, display, clock);
    }

    RecordingDisplay display;
    Clock clock{0L};
    std::optional<Framebuffer> screen;
    std::optional<Panel> panel;
};

TEST_F(PanelTest, PixelsThatAreNotRefreshedStayStale) {
    use(PixelFormat::Rgb24);
    paint(*screen, screen->bounds(), 0x123456);
    panel->update({10, 5, 7, 3}, Waveform::Regular);

    Framebuffer expected({40, 30}, PixelFormat::Rgb24);
    paint(expected, {10, 5, 7, 3}, 0x123456);
    EXPECT_EQ(panel->shown(), expected);
    EXPECT_THAT(display.areas, ElementsAre(Rect{10, 5, 7, 3}));

    paint(*screen, screen->bounds(), kWhite);
    EXPECT_EQ(panel->shown(), expected) << "drawing alone changes nothing on the panel";
    panel->update(screen->bounds(), Waveform::Full);
    EXPECT_EQ(panel->shown(), *screen);
    EXPECT_FALSE(panel->nextStep()) << "all is done at once";
}

TEST_F(PanelTest, FastShowsEveryPenColourAsInk) {
    const std::vector<Rgb> colours = {kBlack, 0xFF0000, 0x0000FF, 0x00FF00, 0xFF00FF, 0x00FFFF, 0xFFFF00};
    const std::vector<Rgb> greys = {0x00, 0x22, 0x44, 0x66, 0x99, 0xBB, 0xDD};
    for (const PixelFormat format : {PixelFormat::Rgb24, PixelFormat::Grey8}) {
        use(format);
        Framebuffer expected(screen->size(), format);
        int row = 0;
        for (const Rgb ink : format == PixelFormat::Rgb24 ? colours : greys) {
            paint(*screen, {3, row, 5, 1}, ink);
            paint(expected, {3, row++, 5, 1}, kBlack);
        }
        // The faint rim of antialiasing stays paper.
        paint(*screen, {20, 0, 5, 5}, 0xEEEEEE);
        panel->update(screen->bounds(), Waveform::Fast);
        EXPECT_EQ(panel->shown(), expected) << "format " << static_cast<int>(format);
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
