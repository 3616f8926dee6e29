#include "platform/host/panel/panel.h"

#include <gmock/gmock.h>

#include <random>

#include "platform/host/screen/screen.h"
#include "screen/pixels.h"
#include "support/recording_display.h"

namespace host {
namespace {

using std::chrono::milliseconds;

constexpr Rect kAll{0, 0, 60, 40};
constexpr Rect kLeft{0, 0, 20, 40};
constexpr Rect kRight{40, 0, 20, 40};
constexpr int kGhost = 16;  // the most that a trace may differ

TEST(Panel, FastShowsEveryPenColourAsInkAndTheFaintRimAsPaperOnEInkOnly) {
    RecordingDisplay display;
    Clock clock{0L};
    for (const auto& [format, pens] : {std::pair(PixelFormat::Rgb24, std::vector{kBlack, 0xFF0000, 0x0000FF, 0x00FF00,
                                                                                 0xFF00FF, 0x00FFFF, 0xFFFF00}),
                                       std::pair(PixelFormat::Grey8, std::vector{kBlack, 0x222222, 0x444444, 0x666666,
                                                                                 0x999999, 0xBBBBBB, 0xDDDDDD})}) {
        Screen screen(kAll.size(), format);
        Panel panel(screen.pixels(), display, clock, true);
        Panel bright(screen.pixels(), display, clock, false, &screen.damage());
        screen.fill(kAll, 0xEEEEEE);
        for (int row = 0; row < 7; ++row) screen.fill({3, row, 5, 1}, pens[static_cast<std::size_t>(row)]);
        for (Panel* each : {&panel, &bright}) each->update(kAll, Waveform::Fast);
        EXPECT_EQ(bright.shown(), screen.pixels()) << "without waveforms it is no e-ink";
        panel.wait();
        screen.fill(kAll, kWhite);
        screen.fill({3, 0, 5, 7}, kBlack);
        for (const auto [x, y] : everyPixel(kAll.size()))
            EXPECT_NEAR(*panel.shown().at(x, y), *screen.pixels().at(x, y), kGhost) << x << ',' << y;
    }
}

struct WaveformsTest : testing::Test {
    int at(int x, int y) const { return *panel.shown().at(x, y); }

    void passUntil(int instant) {
        while (panel.nextStep() && *panel.nextStep() <= milliseconds{instant}) {
            clock.advanceTo(*panel.nextStep());
            panel.advance();
        }
        clock.advanceTo(milliseconds{instant});
        panel.advance();
    }

    void fill(Rect area, int grey) { screen.fill(area, grey * 0x010101); }
    void draw(Rect area, int grey, Waveform waveform) {
        fill(area, grey);
        panel.update(area, waveform);
    }

    RecordingDisplay display;
    Clock clock{0L};
    Screen screen{kAll.size(), PixelFormat::Grey8};
    Panel panel{screen.pixels(), display, clock, true};
};

TEST_F(WaveformsTest, EachTakesItsTimeAndOnlyFastLeavesATraceOfThePictureBefore) {
    for (const auto& [waveform, grey, trace, shortest, longest] :
         {std::tuple(Waveform::Fast, 0, 1, 120, 260), std::tuple(Waveform::Fast, 0xFF, -1, 120, 260),
          std::tuple(Waveform::Regular, 0xFF, 0, 440, 475), std::tuple(Waveform::Full, 0x30, 0, 1990, 2035)}) {
        const Instant begin = clock.now();
        draw(kAll, grey, waveform);
        panel.wait();
        EXPECT_GE(clock.now() - begin, milliseconds{shortest});
        EXPECT_LE(clock.now() - begin, milliseconds{longest});
        EXPECT_GE(trace * (at(5, 5) - grey), std::abs(trace));
        EXPECT_LE(std::abs(at(5, 5) - grey), std::abs(trace) * kGhost);
    }
}

TEST_F(WaveformsTest, OtherRegionsStartAtOnceTheSamePixelsWait) {
    draw(kLeft, 0, Waveform::Fast);
    passUntil(60);
    draw(kRight, 0, Waveform::Fast);
    draw(kLeft, 0xFF, Waveform::Fast);
    passUntil(110);
    EXPECT_LT(at(5, 5), 0x60) << "the running update goes on";
    EXPECT_LT(at(45, 5), 0xD0) << "the other region is on its way";
    passUntil(200);
    EXPECT_LE(at(45, 5), kGhost);
    EXPECT_GT(at(5, 5), 0x20) << "what waited has begun";
    panel.wait();
    EXPECT_LT(clock.now(), milliseconds{300});
}

TEST_F(WaveformsTest, WaitingUpdatesOfTheSamePixelsMerge) {
    for (int i = 0; i < 5; ++i) {
        draw(kLeft, i % 2 == 0 ? 0 : 0xFF, Waveform::Fast);
        passUntil(20 * i);
    }
    draw(kLeft, 0x40, Waveform::Regular);
    panel.wait();
    EXPECT_EQ(at(5, 5), 0x40) << "the last one wins";
    EXPECT_LT(clock.now(), milliseconds{600}) << "one grey update follows the first, no black and white between them";
}

TEST_F(WaveformsTest, AStrokeFlowsThoughItsRectanglesOverlap) {
    for (int piece = 0; piece < 5; ++piece) {
        fill({piece * 8, 10, 12, 4}, 0);
        panel.update({piece * 8 - 4, 6, 20, 12}, Waveform::Fast);
        passUntil((piece + 1) * 8);
    }
    passUntil(5 * 8 + 140);
    EXPECT_FALSE(panel.nextStep()) << "no piece has waited for the one before";
    EXPECT_LE(at(43, 12), kGhost);
}

TEST_F(WaveformsTest, FullFlashesBlackThenWhiteThenShowsThePicture) {
    fill(kLeft, 0x30);
    panel.update(kAll, Waveform::Full);
    passUntil(670);
    EXPECT_LT(std::max(at(5, 5), at(50, 5)), 0x20);
    passUntil(1335);
    EXPECT_GT(std::min(at(5, 5), at(50, 5)), 0xE0);
    panel.wait();
    EXPECT_EQ(panel.shown(), screen.pixels());
}

// Thousands of updates at random, some of them off the screen, of four panels. One is moved at every step, one only
// when it is asked for an update: both show the same at every moment. Two are immediate, one of which refreshes only
// what has been drawn on: they show each update and nothing else. In the end all are alike, but for the ghost.
TEST_F(WaveformsTest, AnyUpdatesEndInThePictureThatWasAskedFor) {
    std::mt19937 random(7);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    RecordingDisplay told;
    Panel lazy(screen.pixels(), display, clock, true);
    Panel immediate(screen.pixels(), told, clock);
    Panel sparing(screen.pixels(), display, clock, false, &screen.damage());
    Screen asked(kAll.size(), PixelFormat::Grey8);
    Screen oneBit(kAll.size(), PixelFormat::Grey8);
    for (int i = 0; i < 3000; ++i) {
        const Rect area{below(80) - 14, below(60) - 14, below(15), below(15)};
        const int grey = below(3) * 0x7F;
        const auto waveform = static_cast<Waveform>(below(40) == 0 ? 2 : below(8) == 0 ? 1 : 0);
        fill(area, grey);
        asked.fill(area, grey * 0x010101);
        oneBit.fill(area, waveform != Waveform::Fast ? grey * 0x010101 : grey == 0xFE ? kWhite : kBlack);
        for (Panel* each : {&panel, &lazy, &immediate, &sparing}) each->update(area, waveform);
        ASSERT_EQ(std::exchange(told.areas, {}),
                  std::vector<Rect>(area.intersected(kAll).empty() ? 0 : 1, area.intersected(kAll)));
        fill(area, 0x38);  // what is drawn after the call is not shown by it
        passUntil(static_cast<int>(clock.now().count()) + below(20));
        if (below(100) > 0) continue;
        lazy.advance();
        ASSERT_EQ(panel.shown(), lazy.shown());
        for (const Panel* each : {&immediate, &sparing}) ASSERT_EQ(each->shown(), asked.pixels());
    }
    panel.wait();
    for (const auto [x, y] : everyPixel(kAll.size())) ASSERT_NEAR(at(x, y), *oneBit.pixels().at(x, y), kGhost);
}

}  // namespace
}  // namespace host
