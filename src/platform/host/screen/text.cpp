#include "platform/host/screen/text.h"

#include <pango/pangoft2.h>

#include <algorithm>
#include <cstddef>

#include "platform/host/base/utf8.h"
#include "platform/host/screen/font_catalog.h"
#include "platform/host/screen/font_sample.h"
#include "platform/host/screen/glyph_cache.h"

namespace host {
namespace {

struct Release {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
    void operator()(PangoAttrList* attributes) const { pango_attr_list_unref(attributes); }
    void operator()(PangoLayoutIter* lines) const { pango_layout_iter_free(lines); }
};
template <typename T>
using Owned = std::unique_ptr<T, Release>;

/// Keeps glyph bitmaps, and the heights of a thousand lines in Pango's 22.10 fixed-point units, within bounds.
constexpr double kLargestPixels = 1000;
/// No box is wider than this for the layout, and no place further away, so that both fit Pango's units.
constexpr int kFarthest = 1 << 20;
/// From this size, in pixels to the em, stems are so thick that hinting changes nothing that can be seen; it takes
/// a third of the time of a font's first glyphs.
constexpr double kUnhinted = 40;

/// Vertical hinting only: stems stay crisp, and advances do not depend on the rasteriser.
void preferLightHinting(FcPattern* pattern, gpointer) {
    double pixels = 0;
    FcPatternGetDouble(pattern, FC_PIXEL_SIZE, 0, &pixels);
    FcPatternDel(pattern, FC_HINT_STYLE);
    FcPatternAddInteger(pattern, FC_HINT_STYLE, pixels < kUnhinted ? FC_HINT_SLIGHT : FC_HINT_NONE);
    FcPatternDel(pattern, FC_HINTING);
    FcPatternAddBool(pattern, FC_HINTING, pixels < kUnhinted ? FcTrue : FcFalse);
    FcPatternDel(pattern, FC_ANTIALIAS);
    FcPatternAddBool(pattern, FC_ANTIALIAS, FcTrue);
}

/// Pixels by which accents of the first line stand out of the layout's top.
int riseOf(PangoLayout* layout) {
    const Owned<PangoLayoutIter> first(pango_layout_get_iter(layout));
    PangoRectangle ink;
    pango_layout_iter_get_line_extents(first.get(), &ink, nullptr);
    return std::max(-PANGO_PIXELS_FLOOR(ink.y), 0);
}

/// What a line takes that is drawn in the vertical middle of a box.
Size sizeUncut(PangoLayout* layout) {
    PangoRectangle ink;
    PangoRectangle box;
    pango_layout_get_pixel_extents(layout, &ink, &box);
    const int above = box.height / 2 - ink.y;
    const int below = ink.y + ink.height - box.height / 2;
    return {box.width, 2 * std::max(above, below)};
}

PangoAlignment alignment(Align align) {
    if (align == Align::Centre) return PANGO_ALIGN_CENTER;
    return align == Align::Start ? PANGO_ALIGN_LEFT : PANGO_ALIGN_RIGHT;
}

}  // namespace

struct Text::Engine {
    /// What a laid-out text is drawn onto, and where.
    struct Canvas {
        Screen& screen;
        Point origin;
        Rect clip;
        Rgb colour;
    };

    explicit Engine(const Device& forDevice);

    [[nodiscard]] Owned<PangoLayout> layout(std::string_view utf8, const font_s& font, Wrap wrap) const;
    void drawLines(const Canvas& on, const TextBlock& block, LineSpan lines);
    void drawLine(const Canvas& on, const PangoLayoutLine* line, Point pen);
    void drawGlyph(const Canvas& on, PangoFont* font, PangoGlyph glyph, Point place);

    const Device& device;
    FontCatalog catalog;
    Owned<PangoFontMap> fonts;
    Owned<PangoContext> context;
    GlyphCache glyphs;
};

Text::Engine::Engine(const Device& forDevice) : device(forDevice), fonts(pango_ft2_font_map_new()), context(nullptr) {
    pango_fc_font_map_set_default_substitute(PANGO_FC_FONT_MAP(fonts.get()), preferLightHinting, nullptr, nullptr);
    context.reset(pango_font_map_create_context(fonts.get()));
}

Owned<PangoLayout> Text::Engine::layout(std::string_view utf8, const font_s& font, Wrap wrap) const {
    const double pixels = std::clamp(device.scale * font.size * device.dpi / 160, 1.0, kLargestPixels);
    const Owned<PangoFontDescription> description(pango_font_description_new());
    const std::string& family = font.family.empty() ? catalog.defaultFamily(0) : font.family;
    pango_font_description_set_family(description.get(), repairedUtf8(family).c_str());
    pango_font_description_set_absolute_size(description.get(), pixels * PANGO_SCALE);

    std::string text = repairedUtf8(utf8);
    Owned<PangoLayout> layout(pango_layout_new(context.get()));
    pango_layout_set_font_description(layout.get(), description.get());
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    if (wrap == Wrap::None) {
        std::replace(text.begin(), text.end(), '\n', ' ');
        std::replace(text.begin(), text.end(), '\r', ' ');
        pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
        pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    } else {
        const Owned<PangoAttrList> attributes(pango_attr_list_new());
        pango_attr_list_insert(attributes.get(), pango_attr_insert_hyphens_new(FALSE));
        pango_layout_set_attributes(layout.get(), attributes.get());
    }
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    return layout;
}

/// Lines out of sight are not drawn.
void Text::Engine::drawLines(const Canvas& on, const TextBlock& block, LineSpan lines) {
    const Owned<PangoLayoutIter> at(pango_layout_get_iter(block.layout()));
    int number = 0;
    do {
        if (number >= lines.end) return;
        if (number++ < lines.first) continue;
        PangoRectangle box;
        pango_layout_iter_get_line_extents(at.get(), nullptr, &box);
        // Accents and tails may leave their line's box, but not by a whole line.
        const int top = on.origin.y + PANGO_PIXELS(box.y + block.top());
        const int height = PANGO_PIXELS(box.height);
        if (top - height >= on.clip.bottom()) return;
        if (top + 2 * height <= on.clip.y) continue;
        const Point pen{box.x, pango_layout_iter_get_baseline(at.get()) + block.top()};
        drawLine(on, pango_layout_iter_get_line_readonly(at.get()), pen);
    } while (pango_layout_iter_next_line(at.get()));
}

/// Draws one line; `pen` is where its baseline begins, in Pango units from the origin.
void Text::Engine::drawLine(const Canvas& on, const PangoLayoutLine* line, Point pen) {
    for (const GSList* runs = line->runs; runs != nullptr; runs = runs->next) {
        const auto* run = static_cast<const PangoGlyphItem*>(runs->data);
        for (int i = 0; i < run->glyphs->num_glyphs; ++i) {
            const PangoGlyphInfo& info = run->glyphs->glyphs[i];
            const Point place{pen.x + info.geometry.x_offset, pen.y - run->y_offset + info.geometry.y_offset};
            if (info.glyph != PANGO_GLYPH_EMPTY) drawGlyph(on, run->item->analysis.font, info.glyph, place);
            pen.x += info.geometry.width;
        }
    }
}

void Text::Engine::drawGlyph(const Canvas& on, PangoFont* font, PangoGlyph glyph, Point place) {
    const GlyphMask& mask = glyphs.mask(font, glyph);
    const Point topLeft{on.origin.x + PANGO_PIXELS(place.x) + mask.offset.x,
                        on.origin.y + PANGO_PIXELS(place.y) + mask.offset.y};
    on.screen.tint(topLeft, mask.coverage(), on.clip, on.colour);
}

Text::Text(const Device& device) : device_(device) {}

Text::~Text() = default;

void Text::warmUp() {
    warming_ = std::async(std::launch::async, [this] {
        auto engine = std::make_unique<Engine>(device_);
        // Finding the default font takes longer than all the rest.
        constexpr int kAnySize = 32;
        pango_layout_get_line_count(engine->layout("A", {.size = kAnySize}, Wrap::None).get());
        return engine;
    });
}

std::unique_ptr<font_s> Text::open(const char* family, int size) {
    if (size <= 0) return nullptr;
    const FontCatalog& catalog = engine().catalog;
    return std::make_unique<font_s>(font_s{catalog.resolve(family == nullptr ? "" : family), size});
}

const char* Text::defaultFamily(int index) const { return engine().catalog.defaultFamily(index).c_str(); }

void Text::draw(Screen& screen, Rect box, std::string_view utf8, const font_s& font, const TextStyle& style) {
    const Rect visible = box.intersected(screen.pixels().bounds());
    if (utf8.empty() || visible.empty() || engine().catalog.empty()) return;
    const TextBlock block(engine().layout(utf8, font, style.wrap).release());
    if (style.wrap == Wrap::None) return drawLine(screen, box, block, style.align, style.colour);
    pango_layout_set_alignment(block.layout(), alignment(style.align));
    pango_layout_set_width(block.layout(), std::min(box.w, kFarthest) * PANGO_SCALE);
    const Point origin{std::max(box.x, -kFarthest), std::max(box.y, -kFarthest) + riseOf(block.layout())};
    engine().drawLines({screen, origin, visible, style.colour}, block, {});
}

TextBlock Text::layOut(std::string_view utf8, const font_s& font, int width, std::optional<int> height) {
    if (engine().catalog.empty()) return TextBlock(nullptr);
    Owned<PangoLayout> layout = engine().layout(utf8, font, Wrap::Words);
    pango_layout_set_width(layout.get(), std::clamp(width, 1, kFarthest) * PANGO_SCALE);
    if (height) {
        pango_layout_set_height(layout.get(), std::clamp(*height, 1, kFarthest) * PANGO_SCALE);
        pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    }
    return TextBlock(layout.release());
}

void Text::draw(Screen& screen, Point topLeft, const TextBlock& block, Rect clip, Rgb colour, LineSpan lines) {
    const Rect visible = clip.intersected(screen.pixels().bounds());
    if (block.layout() == nullptr || visible.empty()) return;
    engine().drawLines({screen, topLeft, visible, colour}, block, lines);
}

TextBlock Text::fitLine(std::string_view utf8, font_s& font, Size room, int smallest) {
    if (engine().catalog.empty()) return TextBlock(nullptr);
    while (true) {
        TextBlock line(engine().layout(utf8, font, Wrap::None).release());
        const auto [w, h] = sizeUncut(line.layout());
        if ((w <= room.w && h <= room.h) || font.size <= smallest) return line;
        const double shrunk = font.size * std::min(1.0 * room.w / std::max(w, 1), 1.0 * room.h / std::max(h, 1));
        font.size = std::max(std::min(static_cast<int>(shrunk), font.size - 1), smallest);
    }
}

void Text::drawLine(Screen& screen, Rect box, const TextBlock& line, Align align, Rgb colour) {
    const Rect visible = box.intersected(screen.pixels().bounds());
    if (line.layout() == nullptr || visible.empty()) return;
    const Size size = line.size();
    int left = box.x;
    if (size.w > box.w) {
        pango_layout_set_alignment(line.layout(), alignment(align));
        pango_layout_set_width(line.layout(), box.w * PANGO_SCALE);
    } else if (align == Align::Centre) {
        left += (box.w - size.w + 1) / 2;
    } else if ((align == Align::End) != line.readsFromRight(0)) {
        left += box.w - size.w;
    }
    const Point origin{std::max(left, -kFarthest), std::max(box.y + (box.h - size.h) / 2, -kFarthest)};
    engine().drawLines({screen, origin, visible, colour}, line, {});
}

Size Text::measure(std::string_view utf8, const font_s& font, int width) {
    if (engine().catalog.empty()) return {};
    const Owned<PangoLayout> layout = engine().layout(utf8, font, Wrap::Words);
    if (width > 0) pango_layout_set_width(layout.get(), std::min(width, kFarthest) * PANGO_SCALE);
    Size size;
    pango_layout_get_pixel_size(layout.get(), &size.w, &size.h);
    return size;
}

std::vector<std::string> Text::families(const std::string& language) { return engine().catalog.familiesFor(language); }

std::string Text::sample(const std::string& family) { return fontSample(engine().catalog.config(), family); }

Text::Engine& Text::engine() const {
    if (engine_ == nullptr) engine_ = warming_.valid() ? warming_.get() : std::make_unique<Engine>(device_);
    return *engine_;
}

}  // namespace host
