#include "platform/host/screen/text.h"

#include <locale.h>
#include <pango/pangoft2.h>

#include <algorithm>

#include "platform/host/base/utf8.h"
#include "platform/host/screen/font_catalog.h"

namespace host {
namespace {

/// Keeps glyph bitmaps, and the heights of a thousand lines in Pango's 22.10 fixed-point units, within bounds.
constexpr double kLargestPixels = 1000;

/// A reference to one of the library's objects.
template <typename T>
using Owned = std::unique_ptr<T, void (*)(void*)>;

void setFont(PangoLayout* layout, const std::string& family, double pixels) {
    PangoFontDescription* font = pango_font_description_new();
    pango_font_description_set_family(font, repairedUtf8(family).c_str());
    pango_font_description_set_absolute_size(font, pixels * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
    pango_font_description_free(font);
}

void breakLines(PangoLayout* layout) {
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    PangoAttrList* attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_insert_hyphens_new(FALSE));
    pango_layout_set_attributes(layout, attributes);
    pango_attr_list_unref(attributes);
}

void keepOnOneLine(PangoLayout* layout, std::string& text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::replace(text.begin(), text.end(), '\r', ' ');
    pango_layout_set_single_paragraph_mode(layout, TRUE);
    pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
}

}  // namespace

struct Text::Engine {
    explicit Engine(const Device& forDevice);

    /// As wide as it likes; empty on a machine without fonts.
    [[nodiscard]] TextBlock layOut(std::string_view utf8, const font_s& font, Wrap wrap) const;

    const Device& device;
    FontCatalog catalog;
    Owned<PangoFontMap> fonts;
    Owned<PangoContext> context;
};

Text::Engine::Engine(const Device& forDevice)
    : device(forDevice),
      fonts(pango_ft2_font_map_new(), g_object_unref),
      context(pango_font_map_create_context(fonts.get()), g_object_unref) {}

TextBlock Text::Engine::layOut(std::string_view utf8, const font_s& font, Wrap wrap) const {
    if (catalog.empty()) return TextBlock(nullptr);
    PangoLayout* layout = pango_layout_new(context.get());
    TextBlock block(layout);
    setFont(layout, font.family.empty() ? catalog.defaultFamily(0) : font.family,
            std::clamp(device.scale * font.size * device.dpi / 160, 1.0, kLargestPixels));
    std::string text = repairedUtf8(utf8);
    wrap == Wrap::None ? keepOnOneLine(layout, text) : breakLines(layout);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    return block;
}

Text::Text(const Device& device) : device_(device) {}

Text::~Text() = default;

void Text::warmUp() {
    // Meanwhile the window system's libraries may change the process's locale for a moment: Pango's language is asked
    // of it before, and the thread has its own.
    warming_ = std::async(std::launch::async, [this, language = pango_language_get_default()] {
        uselocale(newlocale(LC_ALL_MASK, "C", nullptr));
        auto engine = std::make_unique<Engine>(device_);
        pango_context_set_language(engine->context.get(), language);
        // Finding the default font takes longer than all the rest.
        constexpr int kAnySize = 32;
        static_cast<void>(engine->layOut("A", {.size = kAnySize}, Wrap::None).size());
        return engine;
    });
}

std::unique_ptr<font_s> Text::open(const char* family, int size) {
    if (size <= 0) return nullptr;
    return std::make_unique<font_s>(font_s{engine().catalog.resolve(family == nullptr ? "" : family), size});
}

const char* Text::defaultFamily(int index) const {
    return named_.insert(engine().catalog.defaultFamily(index)).first->c_str();
}

void Text::draw(Screen& screen, Rect box, std::string_view utf8, const font_s& font, const TextStyle& style) {
    if (utf8.empty() || box.intersected(screen.pixels().bounds()).empty()) return;
    engine().layOut(utf8, font, style.wrap).drawInside(screen, box, style.align, style.colour);
}

TextBlock Text::layOut(std::string_view utf8, const font_s& font, int width) {
    TextBlock block = engine().layOut(utf8, font, Wrap::Words);
    block.fit(width, Align::Start);
    return block;
}

TextBlock Text::fitLine(std::string_view utf8, font_s& font, Size room, int smallest) {
    while (true) {
        TextBlock line = engine().layOut(utf8, font, Wrap::None);
        const auto [w, h] = line.sizeInMiddle();
        if ((w <= room.w && h <= room.h) || font.size <= smallest) return line;
        const double shrunk = font.size * std::min(1.0 * room.w / std::max(w, 1), 1.0 * room.h / std::max(h, 1));
        font.size = std::max(std::min(static_cast<int>(shrunk), font.size - 1), smallest);
    }
}

Size Text::measure(std::string_view utf8, const font_s& font, int width) {
    return (width > 0 ? layOut(utf8, font, width) : engine().layOut(utf8, font, Wrap::Words)).size();
}

std::vector<std::string> Text::families(const std::string& language) { return engine().catalog.familiesFor(language); }

std::string Text::sample(const std::string& family) { return engine().catalog.sample(family); }

Text::Engine& Text::engine() const {
    if (engine_ == nullptr && warming_.valid()) engine_ = warming_.get();
    if (engine_ == nullptr || !engine_->catalog.upToDate()) engine_ = std::make_unique<Engine>(device_);
    return *engine_;
}

}  // namespace host
