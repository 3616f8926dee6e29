#include <gmock/gmock.h>

#include <random>

#include "platform/host/panel/panel.h"
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

TEST_F(WaveformsTest, EachWaveformTakesItsTimeAndWaitPassesIt) {
    int shade = 0;
    for (const auto& [waveform, shortest, longest] :
         {std::tuple(Waveform::Fast, 120, 260), std::tuple(Waveform::Regular, 440, 470),
          std::tuple(Waveform::Full, 1990, 2030)}) {
        const Instant begin = clock.now();
        draw(kAll, shade++, waveform);
        panel.wait();
        EXPECT_FALSE(panel.nextStep());
        EXPECT_GE(clock.now() - begin, milliseconds{shortest});
        EXPECT_LE(clock.now() - begin, milliseconds{longest});
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
    EXPECT_GE(at(5, 5), 0xFF - kGhost);
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
    int piece = 0;
    for (; piece < 5; ++piece) {
        fill({piece * 8, 10, 12, 4}, 0);
        panel.update({piece * 8 - 4, 6, 20, 12}, Waveform::Fast);
        passUntil((piece + 1) * 8);
    }
    passUntil(5 * 8 + 140);
    EXPECT_FALSE(panel.nextStep()) << "no piece has waited for the one before";
    EXPECT_LE(at(43, 12), kGhost);
}

TEST_F(WaveformsTest, FastLeavesATraceThatRegularRemoves) {
    draw(kLeft, 0, Waveform::Fast);
    panel.wait();
    EXPECT_GT(at(5, 5), 0);
    draw(kLeft, 0xFF, Waveform::Fast);
    panel.wait();
    EXPECT_LT(at(5, 5), 0xFF);
    EXPECT_GE(at(5, 5), 0xFF - kGhost);
    panel.update(kAll, Waveform::Regular);
    panel.wait();
    EXPECT_EQ(panel.shown(), screen.pixels());
}

TEST_F(WaveformsTest, FullFlashesBlackThenWhiteThenShowsThePicture) {
    fill(kLeft, 0x30);
    panel.update(kAll, Waveform::Full);
    passUntil(670);
    EXPECT_LT(at(50, 5), 0x20);
    EXPECT_LT(at(5, 5), 0x20);
    passUntil(1335);
    EXPECT_GT(at(50, 5), 0xE0);
    EXPECT_GT(at(5, 5), 0xE0);
    panel.wait();
    EXPECT_EQ(panel.shown(), screen.pixels());
}

// Thousands of updates at random, one panel of which is moved at every step, one only when it is asked for an
// update: both show the same at every moment, and in the end what an immediate panel shows, but for the ghost.
TEST_F(WaveformsTest, AnyUpdatesEndInThePictureThatWasAskedFor) {
    std::mt19937 random(7);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    Panel lazy(screen.pixels(), display, clock, true);
    Panel immediate(screen.pixels(), display, clock);
    for (int i = 0; i < 3000; ++i) {
        const Rect area{below(60) - 4, below(40) - 4, 1 + below(14), 1 + below(14)};
        fill(area.intersected(kAll), below(3) * 0x70);
        const auto waveform = static_cast<Waveform>(below(40) == 0 ? 2 : below(8) == 0 ? 1 : 0);
        for (Panel* each : {&panel, &lazy, &immediate}) each->update(area, waveform);
        fill(area.intersected(kAll), 0x38);  // what is drawn after the call is not shown by it
        passUntil(static_cast<int>(clock.now().count()) + below(20));
        if (below(300) > 0) continue;
        lazy.advance();
        ASSERT_EQ(panel.shown(), lazy.shown());
    }
    panel.wait();
    for (const auto [x, y] : everyPixel(kAll.size())) ASSERT_NEAR(at(x, y), *immediate.shown().at(x, y), kGhost);
}

}  // namespace
}  // namespace host
