// Copying the canvas out of the screen and back, against memcpy of as many bytes.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "paired.h"
#include "platform/host/screen/screen.h"

namespace {

constexpr host::Size kScreen{1404, 1872};
constexpr host::Rect kCanvas{0, 108, 1404, 1764};
constexpr std::size_t kBytes = std::size_t{1404} * 1764 * 3;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

/// A capture is memory that did not exist before, so its pages are counted for the peer too.
void CaptureCanvas(benchmark::State& state) {
    const host::Screen screen(kScreen, host::PixelFormat::Rgb24);
    const auto ours = [&] { benchmark::DoNotOptimize(screen.capture(kCanvas).get()); };
    const auto peer = [&] {
        const std::unique_ptr<void, Free> copy(std::malloc(kBytes));
        std::memcpy(copy.get(), screen.pixels().at(kCanvas.x, kCanvas.y), kBytes);
        benchmark::DoNotOptimize(copy.get());
    };
    comparePairs(state, ours, peer);
}
BENCHMARK(CaptureCanvas)->Iterations(200);

void DrawCanvas(benchmark::State& state) {
    host::Screen screen(kScreen, host::PixelFormat::Rgb24);
    const host::BitmapPtr page = screen.capture(kCanvas);
    host::Framebuffer target(kScreen, host::PixelFormat::Rgb24);
    const auto ours = [&] { screen.draw({kCanvas.x, kCanvas.y}, *page); };
    const auto peer = [&] {
        std::memcpy(target.at(kCanvas.x, kCanvas.y), bitmap_pixels(page.get()), kBytes);
        benchmark::ClobberMemory();
    };
    comparePairs(state, ours, peer);
}
BENCHMARK(DrawCanvas)->Iterations(200);

}  // namespace
