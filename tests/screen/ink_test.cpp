#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "pixels.h"
#include "platform/host/screen/screen.h"
#include "strokes.h"

namespace host {
namespace {

constexpr int kResolution = 100;
constexpr Size kSheet{700, 700};
constexpr PointD kMiddle{350.3, 349.6};

Rect ink(Screen& screen, const Piece& piece, int width, Rgb colour = kBlack) {
    return screen.ink(piece.x, piece.y, kResolution, colour, width);
}

/// The curve as many points, with the length from the stroke's start to each.
struct Trail {
    explicit Trail(const std::vector<Piece>& pieces) {
        constexpr double kApart = 0.05;
        for (const Piece& piece : pieces) {
            const int parts = std::max(1, static_cast<int>(piece.x.length / kApart));
            for (int i = 0; i <= parts; ++i) {
                const PointD at = pointAt(piece, piece.x.length * i / parts);
                if (!points.empty()) length += std::hypot(at.x - points.back().x, at.y - points.back().y);
                points.push_back(at);
                lengths.push_back(length);
            }
        }
    }

    std::vector<PointD> points;
    std::vector<double> lengths;
    double length = 0;
};

/// For each pixel near the trail: its distance, and how far along the trail its nearest point lies.
class Map {
public:
    Map(const Trail& trail, double reach) : distance(kSheet.w * kSheet.h, 1e9F), along(kSheet.w * kSheet.h, 0.0F) {
        for (std::size_t i = 0; i < trail.points.size(); ++i) {
            const PointD p = trail.points[i];
            for (int y = static_cast<int>(p.y - reach); y <= p.y + reach + 1; ++y) {
                for (int x = static_cast<int>(p.x - reach); x <= p.x + reach + 1; ++x) {
                    const auto d = static_cast<float>(std::hypot(x - p.x, y - p.y));
                    const auto pixel = static_cast<std::size_t>(y * kSheet.w + x);
                    if (d >= distance[pixel]) continue;
                    distance[pixel] = d;
                    along[pixel] = static_cast<float>(trail.lengths[i]);
                }
            }
        }
    }

    std::vector<float> distance;
    std::vector<float> along;
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

struct Stroke {
    std::string name;
    std::vector<PointD> points;
    int width;
};

std::vector<Stroke> strokes() {
    std::vector<Stroke> all;
    for (const int width : {2, 5, 10, 18}) {
        for (const double apart : {2.0, 6.0, 12.0}) {
            const std::string end = " width " + std::to_string(width) + " apart " + std::to_string(apart);
            all.push_back({"circle 60" + end, arcOf(kMiddle, 60, 330, apart), width});
            all.push_back({"circle 300" + end, arcOf(kMiddle, 300, 350, apart), width});
            all.push_back({"line 17" + end, lineOf({50.2, 60.7}, 17, 600, apart), width});
            all.push_back({"line 1 in 2" + end, lineOf({50, 60}, 26.565051177, 600, apart), width});
            all.push_back({"line 45" + end, lineOf({50, 60}, 45, 600, apart), width});
            all.push_back({"line 71" + end, lineOf({350.5, 40}, 71, 600, apart), width});
        }
    }
    return all;
}

TEST(Ink, PiecesMakeOneEvenStroke) {
    for (const Stroke& stroke : strokes()) {
        SCOPED_TRACE(stroke.name);
        Screen screen(kSheet, PixelFormat::Grey8);
        const std::vector<Piece> pieces = drawnPieces(stroke.points);
        for (const Piece& piece : pieces) ink(screen, piece, stroke.width);
        const Trail trail(pieces);
        const Map map(trail, stroke.width / 2.0 + 3);

        const double expected = trail.length * stroke.width + std::numbers::pi * stroke.width * stroke.width / 4;
        EXPECT_NEAR(totalDarkness(screen.pixels()), expected, 0.01 * expected);

        constexpr double kWindow =
            24;  // pixels along the stroke; each pixel counts for the two windows it lies between
        std::vector<double> windows(static_cast<std::size_t>(trail.length / kWindow) + 3);
        int stray = 0;
        int unlike = 0;
        for (int y = 0; y < kSheet.h; ++y) {
            for (int x = 0; x < kSheet.w; ++x) {
                const auto pixel = static_cast<std::size_t>(y * kSheet.w + x);
                const int darkness = darknessAt(screen.pixels(), x, y);
                const double distance = static_cast<double>(map.distance[pixel]);
                if (darkness == 0 && distance > stroke.width) continue;
                unlike += std::abs(darkness - 255 * coverageAt(distance, stroke.width)) > 2.5 ? 1 : 0;
                stray += darkness != 0 && distance > stroke.width / 2.0 + 1 ? 1 : 0;
                const double place = static_cast<double>(map.along[pixel]) / kWindow;
                const auto window = static_cast<std::size_t>(place);
                windows[window] += darkness * (1 - (place - std::floor(place)));
                windows[window + 1] += darkness * (place - std::floor(place));
            }
        }
        EXPECT_EQ(stray, 0);
        EXPECT_EQ(unlike, 0) << "pixels that differ from the whole stroke in one go";
        // The first window and the last four have an end within reach or lie beyond it.
        const auto [least, most] = std::minmax_element(windows.begin() + 1, windows.end() - 4);
        EXPECT_LT(*most / *least, 1.03);
    }
}

TEST(Ink, SharpTurnsMatchTheWholeStroke) {
    const std::vector<PointD> zigzag{{60, 60}, {72, 61}, {63, 66}, {64, 80},   {64, 80},   {90, 80},  {70, 82},
                                     {70, 95}, {58, 93}, {66, 84}, {120, 100}, {121, 101}, {119, 102}};
    for (const int width : {1, 3, 18}) {
        Screen screen(kSheet, PixelFormat::Grey8);
        const std::vector<Piece> pieces = drawnPieces(zigzag);
        for (const Piece& piece : pieces) ink(screen, piece, width);
        const Map map(Trail(pieces), width / 2.0 + 3);
        for (int i = 0; i < kSheet.w * kSheet.h; ++i) {
            const double distance = static_cast<double>(map.distance[static_cast<std::size_t>(i)]);
            const double wanted = distance > width ? 0 : 255 * coverageAt(distance, width);
            ASSERT_NEAR(darknessAt(screen.pixels(), i % kSheet.w, i / kSheet.w), wanted, 5) << "width " << width;
        }
    }
}

TEST(Ink, OverlapsNeverDarken) {
    for (const PixelFormat format : {PixelFormat::Grey8, PixelFormat::Rgb24}) {
        Screen once({80, 60}, format);
        Screen often({80, 60}, format);
        const Rgb colour = 0x336699;
        const std::vector<Piece> whole = piecesOf({{10, 12}, {70, 49}});
        ink(once, whole[0], 9, colour);
        std::vector<PointD> points;
        for (int i = 0; i <= 72; ++i) points.push_back({10 + 60 * i / 72.0, 12 + 37 * i / 72.0});
        for (const Piece& piece : piecesOf(points)) ink(often, piece, 9, colour);
        EXPECT_EQ(firstDifference(once.pixels(), often.pixels(), 2), kNowhere);
        const Framebuffer before = often.pixels();
        ink(often, whole[0], 9, colour);
        EXPECT_EQ(firstDifference(before, often.pixels(), 1), kNowhere);
    }
}

TEST(Ink, AnotherColourCoversAnOlderStroke) {
    Screen crossed({60, 60}, PixelFormat::Rgb24);
    const Piece down = piecesOf({{30, 10}, {30, 50}})[0];
    const Piece across = piecesOf({{10, 30}, {50, 30}})[0];
    ink(crossed, down, 12);
    ink(crossed, across, 12, 0xFF0000);
    EXPECT_EQ(colourAt(crossed.pixels(), 30, 30), 0xFF0000);
    EXPECT_EQ(colourAt(crossed.pixels(), 30, 15), kBlack);
    EXPECT_NEAR(crossed.pixels().at(30, 36)[0], 127.5, 1) << "the edge lies half over the old stroke";
    EXPECT_EQ(crossed.pixels().at(30, 36)[1], 0);
    ink(crossed, down, 12);
    EXPECT_EQ(colourAt(crossed.pixels(), 30, 30), kBlack) << "the first colour is a new ink again";
}

TEST(Ink, IsForgottenWhereAnythingElseIsDrawn) {
    const Piece piece = piecesOf({{20.5, 30}, {80.5, 30}})[0];
    const BitmapPtr white = Screen({30, 30}, PixelFormat::Rgb24).capture({0, 0, 30, 30});
    const std::vector<std::uint8_t> mask(900, 255);
    for (int primitive = 0; primitive < 6; ++primitive) {
        SCOPED_TRACE(primitive);
        Screen screen({100, 60}, PixelFormat::Rgb24);
        ink(screen, piece, 8);
        const Framebuffer inked = screen.pixels();
        const Rect area{40, 20, 30, 30};
        switch (primitive) {
            case 0:
                screen.fill(area, kWhite);
                break;
            case 1:
                screen.draw({area.x, area.y}, *white);
                break;
            case 2:
                screen.frame({.box = area, .thickness = 15, .radius = 0, .colour = kWhite});
                break;
            case 3:
                screen.tint({area.x, area.y}, {mask.data(), 30, {30, 30}}, area, kWhite);
                break;
            case 4:
                screen.clear();
                break;
            default:
                for (int y = 20; y < 50; ++y) screen.line({69, y}, {40, y}, kWhite);
        }
        EXPECT_EQ(colourAt(screen.pixels(), 50, 30), kWhite);
        ink(screen, piece, 8);
        EXPECT_EQ(firstDifference(inked, screen.pixels()), kNowhere);
    }
}

TEST(Ink, ATapIsARoundDotOfTheWidth) {
    for (const int width : {5, 10, 18}) {
        Screen screen({40, 40}, PixelFormat::Grey8);
        const Rect changed = ink(screen, piecesOf({{20, 20}, {20, 20}})[0], width);
        const double area = std::numbers::pi * width * width / 4;
        EXPECT_NEAR(totalDarkness(screen.pixels()), area, 0.03 * area);
        for (int i = 0; i < 400; ++i) {
            const int x = i % 20;
            const int y = i / 20;
            EXPECT_EQ(darknessAt(screen.pixels(), 20 + x, 20 + y), darknessAt(screen.pixels(), 20 - y, 20 + x));
            EXPECT_TRUE(darknessAt(screen.pixels(), x, y) == 0 || changed.contains({x, y}));
        }
    }
}

TEST(Ink, TheScreenEdgeCutsAndTheRectangleHoldsAllChanges) {
    constexpr int kMargin = 60;
    for (int i = 0; i < 200; ++i) {
        const auto place = [i](int salt) { return (i * salt) % 149 - 50 + 0.37 * (i % 3); };
        const std::vector<PointD> points{{place(37), place(53)}, {place(71), place(29)}, {place(97), place(11)}};
        std::vector<PointD> moved = points;
        for (PointD& p : moved) p = {p.x + kMargin, p.y + kMargin};
        Screen small({50, 41}, PixelFormat::Grey8);
        Screen large({50 + 2 * kMargin, 41 + 2 * kMargin}, PixelFormat::Grey8);
        Rect changed{};
        for (const Piece& piece : piecesOf(points)) changed = changed.united(ink(small, piece, 1 + i % 20));
        for (const Piece& piece : piecesOf(moved)) ink(large, piece, 1 + i % 20);
        for (int y = 0; y < 41; ++y) {
            for (int x = 0; x < 50; ++x) {
                const int darkness = darknessAt(small.pixels(), x, y);
                ASSERT_NEAR(darkness, darknessAt(large.pixels(), x + kMargin, y + kMargin), 1) << i;
                ASSERT_TRUE(darkness == 0 || changed.contains({x, y})) << i;
            }
        }
    }
}

TEST(Ink, TakesPiecesOfAnyValue) {
    Screen screen({50, 40}, PixelFormat::Rgb24);
    constexpr double kFar = 1e9;
    EXPECT_TRUE(ink(screen, piecesOf({{kFar, 0}, {kFar, 90}})[0], 18).empty());
    for (const double value : {std::nan(""), 1e300, -1e300, 1e155, std::numeric_limits<double>::infinity()}) {
        EXPECT_TRUE(ink(screen, {{value, 1, 0, 0, 5}, {10, 0, 0, 0, 5}}, 18).empty());
        EXPECT_TRUE(ink(screen, {{10, 1, 0, 0, 5}, {10, value, 0, 0, 5}}, 18).empty());
        EXPECT_TRUE(ink(screen, {{10, 1, 0, 0, 5}, {10, 0, value, 1, 5}}, 18).empty());
        EXPECT_TRUE(ink(screen, {{10, 1, 0, 0, value}, {10, 1, 0, 0, 5}}, 18).empty());
    }
    EXPECT_TRUE(ink(screen, piecesOf({{10, 10}, {20, 20}})[0], 0).empty());
    EXPECT_TRUE(ink(screen, piecesOf({{10, 10}, {20, 20}})[0], -7).empty());
    EXPECT_EQ(firstDifference(screen.pixels(), Framebuffer({50, 40}, PixelFormat::Rgb24)), kNowhere);

    ink(screen, piecesOf({{-kFar, 20}, {kFar, 20}})[0], 4);
    EXPECT_EQ(colourAt(screen.pixels(), 0, 20), kBlack);
    EXPECT_NEAR(*screen.pixels().at(49, 22), 127.5, 1);
    EXPECT_EQ(colourAt(screen.pixels(), 49, 23), kWhite);
    ink(screen, piecesOf({{10, 10}, {20, 20}})[0], std::numeric_limits<int>::max());
    EXPECT_EQ(colourAt(screen.pixels(), 49, 39), kBlack);
}

}  // namespace
}  // namespace host
