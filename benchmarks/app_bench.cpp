// What a person feels while drawing: pointer moves, undo, the palette, leaving a page. Each is measured through the
// controller, as the event loop calls it, on the default panel.

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <malloc.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "colour/codes.h"
#include "colour/controller.h"
#include "paired.h"
#include "pango_peer.h"
#include "platform/host/toolkit.h"

namespace {

constexpr host::Rect kCanvas{0, 108, 1404, 1764};
constexpr std::size_t kPageBytes = std::size_t{1404} * 1764 * 3;
constexpr std::size_t kScreenBytes = std::size_t{1404} * 1872 * 3;
constexpr host::Point kUndo{1078, 50};
constexpr host::Point kRedo{1171, 50};
constexpr host::Point kColour{228, 50};
constexpr host::Point kText{738, 50};

lumora::colour::Controller& controller() { return *lumora::colour::Controller::Instance(); }

/// The program with a fresh page, once for the process.
void startProgram() {
    static const bool started = [] {
        host::Options options;
        options.display = host::DisplayKind::Headless;
        options.storage = "/tmp/colour-bench";
        host::makeToolkit(options);
        host::toolkit().loop.setHome([](int, int, int) { return 0; });
        return true;
    }();
    benchmark::DoNotOptimize(started);
    controller().create();
    controller().Handler(EventType::Redraw, 0, 0);
}

void tap(host::Point at) {
    controller().Handler(EventType::PointerDown, at.x, at.y);
    controller().Handler(EventType::PointerUp, at.x, at.y);
}

/// A spiral, about 6 pixels from point to point, that stays on the canvas.
std::vector<host::Point> spiral(int points) {
    std::vector<host::Point> result;
    double angle = 0;
    for (int i = 0; i < points; ++i) {
        const double radius = 60 + std::fmod(2 * angle, 500);
        result.push_back(
            {static_cast<int>(700 + radius * std::cos(angle)), static_cast<int>(900 + radius * std::sin(angle))});
        angle += 6 / radius;
    }
    return result;
}

void drawMoves(const std::vector<host::Point>& points, std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) controller().Handler(EventType::PointerMove, points[i].x, points[i].y);
}

/// A whole pointer move: toolbar miss, spline, ink, fast refresh; the peer only strokes the piece.
void PointerMove(benchmark::State& state) {
    constexpr int kMoves = 100;
    constexpr double kPenWidth = 10;
    startProgram();
    const std::vector<host::Point> points = spiral(kMoves + 1);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1404, 1872);
    cairo_t* cairo = cairo_create(surface);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(cairo, kPenWidth);
    cairo_set_source_rgb(cairo, 1, 0, 0);

    comparePairs(
        state,
        [&] {
            controller().Handler(EventType::PointerDown, points[0].x, points[0].y);
            drawMoves(points, 1, points.size());
        },
        [&] {
            for (std::size_t i = 0; i + 1 < points.size(); ++i) {
                const double dx = (points[i + 1].x - points[i].x) / 3.0;
                const double dy = (points[i + 1].y - points[i].y) / 3.0;
                cairo_move_to(cairo, points[i].x, points[i].y);
                cairo_curve_to(cairo, points[i].x + dx, points[i].y + dy - 0.2, points[i].x + 2 * dx,
                               points[i].y + 2 * dy - 0.2, points[i + 1].x, points[i + 1].y);
                cairo_stroke(cairo);
            }
        });
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}
BENCHMARK(PointerMove)->Iterations(200);

/// The last thousand moves of a stroke of ten thousand against its first thousand.
void LongStroke(benchmark::State& state) {
    constexpr std::size_t kPart = 1000;
    startProgram();
    // Both parts lead over the same places: the spiral comes round again.
    std::vector<host::Point> points;
    const std::vector<host::Point> turn = spiral(kPart);
    while (points.size() < 10 * kPart) points.insert(points.end(), turn.begin(), turn.end());
    std::vector<double> atEnd;
    std::vector<double> atStart;
    for (auto _ : state) {
        controller().Handler(EventType::PointerDown, points[0].x, points[0].y);
        atStart.push_back(timed([&] { drawMoves(points, 0, kPart); }));
        drawMoves(points, kPart, 9 * kPart);
        atEnd.push_back(timed([&] { drawMoves(points, 9 * kPart, 10 * kPart); }));
    }
    reportRatio(state, atEnd, atStart);
}
BENCHMARK(LongStroke)->Iterations(40);

/// The end of a stroke, which keeps the page for undo, of a picture whose pages go to the disk in another thread,
/// against one whose pages do not.
void StrokeEnd(benchmark::State& state) {
    constexpr int kStrokes = 5;
    startProgram();
    std::vector<double> kept;
    std::vector<double> unkept;
    for (auto _ : state) {
        for (std::vector<double>* times : {&kept, &unkept}) {
            controller().create();
            if (times == &unkept) host::toolkit().keeper.abandon();
            for (int y = 0; y < kStrokes; ++y) {
                controller().Handler(EventType::PointerDown, 300, 500 + 90 * y);
                controller().Handler(EventType::PointerMove, 700, 540 + 90 * y);
                times->push_back(timed([&] { controller().Handler(EventType::PointerUp, 900, 500 + 90 * y); }));
            }
            host::toolkit().keeper.abandon();
        }
    }
    reportRatio(state, kept, unkept);
}
BENCHMARK(StrokeEnd)->Iterations(20);

/// The test that decides whether a page needs a file, against reading its bytes once.
void BlankTest(benchmark::State& state) {
    const host::BitmapPtr page = host::makeBitmap(kCanvas.w, kCanvas.h, 24);
    std::memset(bitmap_pixels(page.get()), 0xFF, kPageBytes);
    comparePairs(
        state, [&] { benchmark::DoNotOptimize(Canvas::isBlank(*page)); },
        [&] {
            std::uint64_t sum = 0;
            const std::uint8_t* bytes = bitmap_pixels(page.get());
            for (std::size_t i = 0; i + sizeof sum <= kPageBytes; i += sizeof sum) {
                std::uint64_t word = 0;
                std::memcpy(&word, bytes + i, sizeof word);
                sum += word;
            }
            benchmark::DoNotOptimize(sum);
        });
}
BENCHMARK(BlankTest)->Iterations(200);

/// One step back or forward, with its refresh, against memcpy of the page.
void UndoRedo(benchmark::State& state) {
    startProgram();
    tap({500, 900});
    tap({800, 1200});
    std::vector<std::uint8_t> from(kPageBytes, 0xFF);
    std::vector<std::uint8_t> to(kPageBytes);
    bool back = true;
    comparePairs(
        state,
        [&] {
            tap(back ? kUndo : kRedo);
            back = !back;
        },
        [&] {
            std::memcpy(to.data(), from.data(), kPageBytes);
            benchmark::ClobberMemory();
        });
}
BENCHMARK(UndoRedo)->Iterations(200);

/// The palette opened and closed again without a choice, against memcpy of the screen.
void OpenPalette(benchmark::State& state) {
    startProgram();
    std::vector<std::uint8_t> from(kScreenBytes, 0xFF);
    std::vector<std::uint8_t> to(kScreenBytes);
    comparePairs(
        state,
        [&] {
            tap(kColour);
            tap({1200, 1700});
        },
        [&] {
            std::memcpy(to.data(), from.data(), kScreenBytes);
            benchmark::ClobberMemory();
        });
}
BENCHMARK(OpenPalette)->Name("Palette")->Iterations(200);

/// One report while a shown box of 200 characters is moved, against memcpy of the page and Pango's own layout and
/// rendering of the text.
void LiveMove(benchmark::State& state) {
    constexpr std::size_t kCharacters = 200;
    constexpr host::Rect kBox{300, 600, 800, 500};
    constexpr host::Point kBand{500, 600};  // on its upper edge, between two handles
    startProgram();
    std::string words;
    while (words.size() < kCharacters) words += "The quick brown fox jumps over the lazy dog. ";
    words.resize(kCharacters);
    tap(kText);
    controller().Handler(EventType::PointerDown, kBox.x, kBox.y);
    controller().Handler(EventType::PointerUp, kBox.x + kBox.w - 1, kBox.y + kBox.h - 1);
    if (!host::toolkit().loop.command([&words](host::Modal& keyboard) { return keyboard.type(words); })) {
        return state.SkipWithError("no keyboard has opened");
    }
    controller().Handler(EventType::PointerDown, kBand.x, kBand.y);

    PangoPeer pango(kBox.size());
    std::vector<std::uint8_t> from(kPageBytes, 0xFF);
    std::vector<std::uint8_t> to(kPageBytes);
    int shift = 0;
    comparePairs(
        state,
        [&] {
            shift = (shift + 7) % 200;
            controller().Handler(EventType::PointerReport, kBand.x + shift, kBand.y + shift);
        },
        [&] {
            std::memcpy(to.data(), from.data(), kPageBytes);
            pango.draw(words, "DejaVu Sans", host::toolkit().options.device, kBox.w, 0);
        });
    controller().Handler(EventType::PointerUp, kBand.x, kBand.y);
}
BENCHMARK(LiveMove)->Iterations(200);

/// Memory of a full history, the page and the page to redo, over seven pages' own bytes.
void HistoryMemory(benchmark::State& state) {
    startProgram();
    const auto used = [] {
        const struct mallinfo2 heap = mallinfo2();
        return heap.uordblks + heap.hblkhd;
    };
    for (auto _ : state) {
        const std::size_t before = used();  // one page
        for (int step = 0; step < 12; ++step) tap({300, 300 + 60 * step});
        tap(kUndo);
        const auto grown = static_cast<double>(used() - before);
        state.counters["over_seven_pages_KiB"] = (grown - 6.0 * static_cast<double>(kPageBytes)) / 1024;
    }
}
BENCHMARK(HistoryMemory)->Iterations(1);

}  // namespace
