#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/host/keyboard/keyboard.h"
#include "platform/host/touch/pointer_event.h"

namespace {

using namespace host;
using Seconds = std::chrono::duration<double>;

class BlankDisplay final : public Display {
public:
    void present(const Framebuffer&, Rect) override {}
    std::optional<Input> wait(std::optional<std::chrono::milliseconds>) override { return std::nullopt; }
    void wake() override {}
};

/// A keyboard on a screen of its own.
struct Bench {
    explicit Bench(std::size_t textLength)
        : screen({device.width, device.height}, device.colour ? PixelFormat::Rgb24 : PixelFormat::Grey8),
          panel(screen.pixels(), display, clock),
          text(device),
          theme(COLOUR_SOURCE_DIR "/theme", device),
          languages(COLOUR_SOURCE_DIR "/theme/languages", "en"),
          buffer(fill(textLength)),
          keyboard(desk, KeyboardRequest{"@TextDirection", buffer.data(), 1023, 0, nullptr}) {}

    static std::array<char, 1024> fill(std::size_t length) {
        constexpr std::string_view kSentence = "The quick brown fox jumps over the lazy dog. ";
        std::array<char, 1024> filled{};
        for (std::size_t i = 0; i < length; ++i) filled[i] = kSentence[i % kSentence.size()];
        return filled;
    }

    void drawAll() {
        keyboard.paint();
        panel.update(keyboard.area(), Waveform::Fast);
    }
    void tap(std::string_view name) {
        const Rect key = keyboard.keyRect(name).value();
        const Point middle{key.x + key.w / 2, key.y + key.h / 2};
        keyboard.pointer(kPointerDown, middle);
        keyboard.pointer(kPointerUp, middle);
    }

    Device device;
    Screen screen;
    BlankDisplay display;
    Clock clock{0};
    Panel panel;
    Text text;
    Theme theme;
    Languages languages;
    Desk desk{device, screen, panel, text, theme, languages};
    std::array<char, 1024> buffer;
    Keyboard keyboard;
};

template <typename Work>
double timed(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return Seconds(std::chrono::steady_clock::now() - start).count();
}

/// What the work itself takes: everything above it is other programs' time.
double least(const std::vector<double>& values) { return *std::min_element(values.begin(), values.end()); }

/// One key press (key down and up, the field laid out anew, their refreshes) against painting and refreshing the whole
/// keyboard.
void keyPress(benchmark::State& state) {
    Bench bench(static_cast<std::size_t>(state.range(0)));
    bench.drawAll();
    std::vector<double> press;
    std::vector<double> whole;
    for (auto _ : state) {
        press.push_back(timed([&bench] { bench.tap("x"); }));
        whole.push_back(timed([&bench] { bench.drawAll(); }));
        bench.tap("backspace");
    }
    state.counters["press_ms"] = least(press) * 1e3;
    state.counters["whole_ms"] = least(whole) * 1e3;
    state.counters["ratio"] = least(press) / least(whole);
}
BENCHMARK(keyPress)->ArgName("characters")->Arg(20)->Arg(200)->Arg(1000)->Iterations(200);

}  // namespace
