// Text in a frame and the first opening of the font selector, each against Pango alone.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "paired.h"
#include "pango_peer.h"
#include "platform/host/dialogs/font_selector.h"
#include "platform/host/dialogs/font_selector_geometry.h"
#include "platform/host/panel/headless_display.h"

namespace {

using namespace host;

constexpr Rect kFrame{50, 150, 1300, 1650};
constexpr std::size_t kCharacters = 1000;

/// The words again and again, cut after a whole number of characters.
std::string repeated(const std::string& words) {
    std::string text;
    while (g_utf8_strlen(text.c_str(), -1) < static_cast<glong>(kCharacters)) text += words;
    text.resize(static_cast<std::size_t>(g_utf8_offset_to_pointer(text.c_str(), kCharacters) - text.c_str()));
    return text;
}

void thousandCharacters(benchmark::State& state, const std::string& words, PixelFormat format) {
    const Device device;
    Text text(device);
    Screen screen({device.width, device.height}, format);
    const std::unique_ptr<font_s> font = text.open(nullptr, kFontSize);
    const std::string characters = repeated(words);
    PangoPeer pango(kFrame.size());
    const auto ours = [&] { text.draw(screen, kFrame, characters, *font, {}); };
    const auto peer = [&] { pango.draw(characters, font->family.c_str(), device, kFrame.w, 0); };
    ours();
    peer();
    comparePairs(state, ours, peer);
}

void ThousandLatinCharacters(benchmark::State& state) {
    thousandCharacters(state, "The quick brown fox jumps over the lazy dog. ", PixelFormat::Rgb24);
}
BENCHMARK(ThousandLatinCharacters)->Iterations(200);

void ThousandLatinCharactersGrey(benchmark::State& state) {
    thousandCharacters(state, "The quick brown fox jumps over the lazy dog. ", PixelFormat::Grey8);
}
BENCHMARK(ThousandLatinCharactersGrey)->Iterations(200);

void ThousandArabicCharacters(benchmark::State& state) {
    thousandCharacters(state, "مرحبا بالعالم هذا نص عربي ", PixelFormat::Rgb24);
}
BENCHMARK(ThousandArabicCharacters)->Iterations(200);

void ThousandDevanagariCharacters(benchmark::State& state) {
    thousandCharacters(state, "नमस्ते दुनिया क्षत्रिय संस्कृति ", PixelFormat::Rgb24);
}
BENCHMARK(ThousandDevanagariCharacters)->Iterations(200);

void OneUnbrokenThousand(benchmark::State& state) { thousandCharacters(state, "x", PixelFormat::Rgb24); }
BENCHMARK(OneUnbrokenThousand)->Iterations(100);

/// The names are those of the first page. Both begin with the default font in use, as it is in the program, and none of
/// the others open; closing them again is not measured.
void OpenFontSelector(benchmark::State& state) {
    const Device device;
    Clock clock(0);
    const std::unique_ptr<Display> display = openHeadless();
    Screen screen({device.width, device.height}, PixelFormat::Rgb24);
    Panel panel(screen.pixels(), *display, clock);
    Theme theme(COLOUR_SOURCE_DIR "/theme", device);
    Languages languages(COLOUR_SOURCE_DIR "/theme/languages", "en");
    const FontSelectorGeometry boxes(device, 11);
    const std::vector<std::string> families = Text(device).families("en");
    const int rows = std::min(boxes.rows, static_cast<int>(families.size()));
    std::vector<double> ours;
    std::vector<double> peer;
    for (auto _ : state) {
        screen.clear();  // it opens over a white page
        panel.update(device.bounds(), Waveform::Regular);
        Text text(device);
        text.draw(screen, boxes.title, "Font", {.size = kFontSize}, {});
        const Desk desk{device, screen, panel, text, theme, languages};
        ours.push_back(timed([&] {
            const auto selector = makeFontSelector(desk, {"Font", families.front() + ",28", true, nullptr});
            selector->paint();
            panel.update(selector->area(), Waveform::Regular);
        }));
        PangoPeer pango(boxes.list.size());
        pango.draw("Font", text.defaultFamily(0), device, boxes.list.w, 0);
        peer.push_back(timed([&] {
            for (int row = 0; row < rows; ++row) {
                const std::string& family = families[static_cast<std::size_t>(row)];
                pango.draw(family, family.c_str(), device, boxes.list.w, boxes.list.h * row / rows);
            }
        }));
    }
    reportRatio(state, ours, peer);
    state.counters["fonts"] = static_cast<double>(families.size());
}
BENCHMARK(OpenFontSelector)->Iterations(50);

}  // namespace
