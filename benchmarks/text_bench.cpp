// Text in a frame and the first opening of the font selector, each against Pango alone.

#include <benchmark/benchmark.h>
#include <pango/pangoft2.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "paired.h"
#include "platform/host/desk/font_selector.h"
#include "platform/host/desk/font_selector_geometry.h"
#include "platform/host/panel/headless_display.h"

namespace {

using namespace host;

constexpr int kFontSize = 28;
constexpr Rect kFrame{50, 150, 1300, 1650};
constexpr std::size_t kCharacters = 1000;

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};

/// Pango with its own settings, rendering into a bitmap that stands ready.
class Pango {
public:
    explicit Pango(Size size)
        : fonts_(pango_ft2_font_map_new()),
          context_(pango_font_map_create_context(fonts_.get())),
          pixels_(static_cast<std::size_t>(size.w) * static_cast<std::size_t>(size.h)) {
        bitmap_.width = static_cast<unsigned>(size.w);
        bitmap_.rows = static_cast<unsigned>(size.h);
        bitmap_.pitch = size.w;
        bitmap_.buffer = pixels_.data();
        bitmap_.num_grays = 256;
        bitmap_.pixel_mode = FT_PIXEL_MODE_GRAY;
    }

    void draw(const std::string& text, const char* family, const Device& device, int width, int top) {
        const std::unique_ptr<PangoLayout, Unref> layout(pango_layout_new(context_.get()));
        PangoFontDescription* font = pango_font_description_new();
        pango_font_description_set_family(font, family);
        pango_font_description_set_absolute_size(font, kFontSize * device.dpi * device.scale / 160 * PANGO_SCALE);
        pango_layout_set_font_description(layout.get(), font);
        pango_font_description_free(font);
        pango_layout_set_width(layout.get(), width * PANGO_SCALE);
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
        pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
        pango_ft2_render_layout(&bitmap_, layout.get(), 0, top);
        benchmark::ClobberMemory();
    }

private:
    std::unique_ptr<PangoFontMap, Unref> fonts_;
    std::unique_ptr<PangoContext, Unref> context_;
    std::vector<std::uint8_t> pixels_;
    FT_Bitmap bitmap_{};
};

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
    Pango pango(kFrame.size());
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

/// Both begin without any font open; the names are those of the first page.
void OpenFontSelector(benchmark::State& state) {
    const Device device;
    Clock clock(0);
    const std::unique_ptr<Display> display = openHeadless();
    Screen screen({device.width, device.height}, PixelFormat::Rgb24);
    Panel panel(screen.pixels(), *display, clock);
    Theme theme(COLOUR_SOURCE_DIR "/theme", device);
    Languages languages(COLOUR_SOURCE_DIR "/theme/languages", "en");
    const FontSelectorGeometry boxes(device, 11);
    const std::vector<std::string> families = Text(device).families();
    const auto ours = [&] {
        Text text(device);
        const Desk desk{device, screen, panel, text, theme, languages};
        const auto selector = makeFontSelector(desk, {"Font", families.front() + ",28", true, nullptr});
        selector->paint();
        panel.update(selector->area(), Waveform::Regular);
    };
    const auto peer = [&] {
        Pango pango(boxes.list.size());
        const int rows = std::min(boxes.rows, static_cast<int>(families.size()));
        for (int row = 0; row < rows; ++row) {
            const std::string& family = families[static_cast<std::size_t>(row)];
            pango.draw(family, family.c_str(), device, boxes.list.w, boxes.list.h * row / rows);
        }
    };
    ours();
    comparePairs(state, ours, peer);
    state.counters["fonts"] = static_cast<double>(families.size());
}
BENCHMARK(OpenFontSelector)->Iterations(50);

}  // namespace
