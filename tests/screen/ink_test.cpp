#include <gtest/gtest.h>

#include <functional>

#include "platform/host/screen/screen.h"
#include "screen/pixels.h"
#include "screen/strokes.h"

namespace host {
namespace {

constexpr int kResolution = 100;
constexpr Size kSheet{700, 700};
constexpr PointD kMiddle{350.3, 349.6};

Rect ink(Screen& screen, const Piece& piece, int width, Rgb colour = kBlack) {
    return screen.ink(piece.x, piece.y, kResolution, colour, width);
}

Framebuffer inked(const std::vector<Piece>& pieces, int width) {
    Screen screen(kSheet, PixelFormat::Grey8);
    for (const Piece& piece : pieces) ink(screen, piece, width);
    return screen.pixels();
}

/// The curve's length and, for each pixel within reach of it, how far off it lies and how far along.
struct Trail {
    Trail(const std::vector<Piece>& pieces, double reach)
        : distance(kSheet.w * kSheet.h, 1e9), along(kSheet.w * kSheet.h) {
        constexpr double kApart = 0.05;
        PointD last = pointAt(pieces.front(), 0);
        for (const Piece& piece : pieces) {
            const int parts = std::max(1, static_cast<int>(piece.x.length / kApart));
            for (int i = 0; i <= parts; ++i) {
                const PointD at = pointAt(piece, piece.x.length * i / parts);
                length += std::hypot(at.x - last.x, at.y - last.y);
                last = at;
                measureAround(at, reach);
            }
        }
    }
    void measureAround(PointD p, double reach) {
        for (int y = static_cast<int>(p.y - reach); y <= p.y + reach + 1; ++y) {
            for (int x = static_cast<int>(p.x - reach); x <= p.x + reach + 1; ++x) {
                const double d = std::hypot(x - p.x, y - p.y);
                const auto pixel = static_cast<std::size_t>(y * kSheet.w + x);
                if (d >= distance[pixel]) continue;
                distance[pixel] = d;
                along[pixel] = length;
            }
        }
    }

    double length = 0;
    std::vector<double> distance;
    std::vector<double> along;
};

/// Coverage of a pixel at that distance from the curve: the stroke's edge, averaged over the two boxes in turn.
double coverageAt(double distance, int width) {
    constexpr int kSamples = 64;
    double sum = 0;
    for (int i = 0; i < kSamples; ++i) {
        const double shift = ((i + 0.5) / kSamples - 0.5) / std::sqrt(5.0);
        sum += std::clamp((width / 2.0 - distance + shift) * std::numbers::sqrt2 + 0.5, 0.0, 1.0);
    }
    return sum / kSamples;
}

/// Circles and slanted lines, by points that far apart.
std::vector<std::vector<PointD>> strokes(double apart) {
    return {arcOf(kMiddle, 60, 330, apart),       arcOf(kMiddle, 300, 350, apart),
            lineOf({50.2, 60.7}, 17, 600, apart), lineOf({50, 60}, 26.565051177, 600, apart),
            lineOf({50, 60}, 45, 600, apart),     lineOf({350.5, 40}, 71, 600, apart)};
}

/// Levels by which a pixel differs from the whole stroke drawn in one go.
double unlikeness(int darkness, double distance, int width) {
    return std::abs(darkness - (distance > width ? 0 : 255 * coverageAt(distance, width)));
}

void expectOneEvenStroke(const std::vector<Piece>& pieces, int width) {
    const Framebuffer pixels = inked(pieces, width);
    const Trail trail(pieces, width / 2.0 + 3);
    const double expected = trail.length * width + std::numbers::pi * width * width / 4;
    EXPECT_NEAR(totalDarkness(pixels), expected, 0.01 * expected);

    // Along the stroke; each pixel counts for the two windows that it lies between.
    constexpr double kWindow = 24;
    std::vector<double> windows(static_cast<std::size_t>(trail.length / kWindow) + 3);
    int stray = 0;
    int unlike = 0;
    for (std::size_t i = 0; i < trail.distance.size(); ++i) {
        const int darkness = 255 - pixels.at(0, 0)[i];
        unlike += unlikeness(darkness, trail.distance[i], width) > 2.5 ? 1 : 0;
        stray += darkness != 0 && trail.distance[i] > width / 2.0 + 1 ? 1 : 0;
        const double place = trail.along[i] / kWindow;
        const auto window = static_cast<std::size_t>(place);
        windows[window] += darkness * (1 - (place - std::floor(place)));
        windows[window + 1] += darkness * (place - std::floor(place));
    }
    EXPECT_EQ(stray, 0);
    EXPECT_EQ(unlike, 0);
    // The first window and the last four have an end within reach or lie beyond it.
    const auto [least, most] = std::minmax_element(windows.begin() + 1, windows.end() - 4);
    EXPECT_LT(*most / *least, 1.03);
}

class InkApart : public testing::TestWithParam<double> {};
INSTANTIATE_TEST_SUITE_P(Pixels, InkApart, testing::Values(2.0, 6.0, 12.0));

TEST_P(InkApart, PiecesMakeOneEvenStroke) {
    for (const std::vector<PointD>& points : strokes(GetParam())) {
        for (const int width : {2, 5, 10, 18}) {
            SCOPED_TRACE(testing::Message() << "width " << width << " to " << points.back().x);
            expectOneEvenStroke(drawnPieces(points), width);
        }
    }
}

TEST(Ink, SharpTurnsMatchTheWholeStroke) {
    const std::vector<PointD> turns{{60, 60}, {72, 61}, {63, 66}, {64, 80},   {64, 80},   {90, 80},  {70, 82},
                                    {70, 95}, {58, 93}, {66, 84}, {120, 100}, {121, 101}, {119, 102}};
    const std::vector<Piece> zigzag = drawnPieces(turns);
    for (const int width : {1, 3, 18}) {
        const Framebuffer pixels = inked(zigzag, width);
        const Trail trail(zigzag, width / 2.0 + 3);
        for (std::size_t i = 0; i < trail.distance.size(); ++i) {
            ASSERT_LE(unlikeness(255 - pixels.at(0, 0)[i], trail.distance[i], width), 5) << "width " << width;
        }
    }
}

TEST(Ink, OverlapsNeverDarken) {
    std::vector<PointD> points;
    for (int i = 0; i <= 72; ++i) points.push_back({10 + 60 * i / 72.0, 12 + 37 * i / 72.0});
    const Piece whole = piecesOf({points.front(), points.back()})[0];
    for (const PixelFormat format : {PixelFormat::Grey8, PixelFormat::Rgb24}) {
        Screen once({80, 60}, format);
        Screen often({80, 60}, format);
        ink(once, whole, 9, 0x336699);
        for (const Piece& piece : piecesOf(points)) ink(often, piece, 9, 0x336699);
        EXPECT_EQ(firstDifference(once.pixels(), often.pixels(), 2), kNowhere);
        const Framebuffer before = often.pixels();
        ink(often, whole, 9, 0x336699);
        EXPECT_EQ(firstDifference(before, often.pixels(), 1), kNowhere);
    }
}

TEST(Ink, AnotherColourCoversAnOlderStroke) {
    Screen crossed({60, 60}, PixelFormat::Rgb24);
    const Piece down = piecesOf({{30, 10}, {30, 50}})[0];
    ink(crossed, down, 12);
    ink(crossed, piecesOf({{10, 30}, {50, 30}})[0], 12, 0xFF0000);
    EXPECT_EQ(colourAt(crossed.pixels(), {30, 30}), 0xFF0000);
    EXPECT_EQ(colourAt(crossed.pixels(), {30, 15}), kBlack);
    EXPECT_NEAR(crossed.pixels().at(30, 36)[0], 127.5, 1) << "the edge lies half over the old stroke";
    EXPECT_EQ(crossed.pixels().at(30, 36)[1], 0);
    ink(crossed, down, 12);
    EXPECT_EQ(colourAt(crossed.pixels(), {30, 30}), kBlack) << "the first colour is a new ink again";
}

TEST(Ink, IsForgottenWhereAnythingElseIsDrawn) {
    const Piece piece = piecesOf({{20.5, 30}, {80.5, 30}})[0];
    const Point corner{40, 20};
    const Rect area{40, 20, 30, 30};
    const BitmapPtr white = Screen(area.size(), PixelFormat::Rgb24).capture({0, 0, 30, 30});
    const std::vector<std::uint8_t> mask(900, 255);
    const Coverage coverage{mask.data(), 30, area.size()};
    const Frame frame{.box = area, .thickness = 15, .radius = 0, .colour = kWhite};
    const std::vector<std::function<void(Screen&)>> primitives{
        [&](Screen& screen) { screen.fill(area, kWhite); },
        [&](Screen& screen) { screen.draw(corner, *white); },
        [&](Screen& screen) { screen.frame(frame); },
        [&](Screen& screen) { screen.tint(corner, coverage, area, kWhite); },
        [&](Screen& screen) { screen.clear(); },
        [&](Screen& screen) {
            for (int y = 20; y < 50; ++y) screen.line({69, y}, {40, y}, kWhite);
        }};
    for (std::size_t i = 0; i < primitives.size(); ++i) {
        Screen screen({100, 60}, PixelFormat::Rgb24);
        ink(screen, piece, 8);
        const Framebuffer before = screen.pixels();
        primitives[i](screen);
        EXPECT_EQ(colourAt(screen.pixels(), {50, 30}), kWhite);
        ink(screen, piece, 8);
        EXPECT_EQ(firstDifference(before, screen.pixels()), kNowhere) << i;
    }
}

TEST(Ink, ATapIsARoundDotOfTheWidth) {
    for (const int width : {5, 10, 18}) {
        Screen screen({41, 41}, PixelFormat::Grey8);
        const Rect changed = ink(screen, piecesOf({{20, 20}, {20, 20}})[0], width);
        const double area = std::numbers::pi * width * width / 4;
        EXPECT_NEAR(totalDarkness(screen.pixels()), area, 0.03 * area);
        for (const Point at : everyPixel({41, 41})) {
            const int darkness = darknessAt(screen.pixels(), at);
            EXPECT_EQ(darkness, darknessAt(screen.pixels(), {40 - at.y, at.x}));
            EXPECT_TRUE(darkness == 0 || changed.contains(at));
        }
    }
}

TEST(Ink, TheScreenEdgeCutsAndTheRectangleHoldsAllChanges) {
    constexpr int kMargin = 60;
    for (int i = 0; i < 200; ++i) {
        const auto place = [i](int salt) { return (i * salt) % 149 - 50 + 0.37 * (i % 3); };
        std::vector<PointD> points{{place(37), place(53)}, {place(71), place(29)}, {place(97), place(11)}};
        Screen small({50, 41}, PixelFormat::Grey8);
        Screen large({50 + 2 * kMargin, 41 + 2 * kMargin}, PixelFormat::Grey8);
        Rect changed{};
        for (const Piece& piece : piecesOf(points)) changed = changed.united(ink(small, piece, 1 + i % 20));
        for (PointD& p : points) p = {p.x + kMargin, p.y + kMargin};
        for (const Piece& piece : piecesOf(points)) ink(large, piece, 1 + i % 20);
        ASSERT_EQ(firstDifference(small.pixels(), large.pixels(), 1, kMargin), kNowhere) << i;
        for (const Point at : everyPixel({50, 41})) {
            ASSERT_TRUE(darknessAt(small.pixels(), at) == 0 || changed.contains(at)) << i;
        }
    }
}

}  // namespace
}  // namespace host
