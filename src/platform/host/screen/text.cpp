#include "platform/host/screen/text.h"

#include <pango/pangoft2.h>

#include <algorithm>
#include <cstddef>

#include "platform/host/screen/font_catalog.h"
#include "platform/host/screen/font_sample.h"
#include "platform/host/screen/text_repair.h"

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
/// Hinting may move the edge of a glyph beyond the ink that its outline promises.
constexpr int kHintingMargin = 2;

/// Vertical hinting only: stems stay crisp, and advances do not depend on the rasteriser.
void preferLightHinting(FcPattern* pattern, gpointer) {
    FcPatternDel(pattern, FC_HINT_STYLE);
    FcPatternAddInteger(pattern, FC_HINT_STYLE, FC_HINT_SLIGHT);
    FcPatternDel(pattern, FC_HINTING);
    FcPatternAddBool(pattern, FC_HINTING, FcTrue);
    FcPatternDel(pattern, FC_ANTIALIAS);
    FcPatternAddBool(pattern, FC_ANTIALIAS, FcTrue);
}

PangoAlignment alignment(Align align) {
    if (align == Align::Centre) return PANGO_ALIGN_CENTER;
    return align == Align::Start ? PANGO_ALIGN_LEFT : PANGO_ALIGN_RIGHT;
}

/// From one pixel to a place `units` beyond another; the place is visible, so the sum is small.
int unitsBetween(int from, int origin, int units) {
    return static_cast<int>((std::int64_t{origin} - from) * PANGO_SCALE + units);
}

/// The whole pixels that a rectangle in Pango units touches, seen from `origin` and widened by the margin.
Rect pixelsAround(PangoRectangle rect, Point origin) {
    pango_extents_to_pixels(&rect, nullptr);
    return Rect{origin.x + rect.x, origin.y + rect.y, rect.width, rect.height}.inset(-kHintingMargin);
}

}  // namespace

struct Text::Engine {
    explicit Engine(const Device& forDevice);

    [[nodiscard]] Owned<PangoLayout> layout(std::string_view utf8, const font_s& font, const TextStyle& style) const;
    void drawLines(Screen& screen, PangoLayout* layout, Point origin, Rect visible, Rgb colour);
    void drawLine(Screen& screen, PangoLayoutLine* line, Point start, Rect inked, Rgb colour);

    const Device& device;
    FontCatalog catalog;
    Owned<PangoFontMap> fonts;
    Owned<PangoContext> context;
    std::vector<std::uint8_t> mask;
};

Text::Engine::Engine(const Device& forDevice) : device(forDevice), fonts(pango_ft2_font_map_new()), context(nullptr) {
    pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(fonts.get()), catalog.config());
    pango_fc_font_map_set_default_substitute(PANGO_FC_FONT_MAP(fonts.get()), preferLightHinting, nullptr, nullptr);
    context.reset(pango_font_map_create_context(fonts.get()));
}

Owned<PangoLayout> Text::Engine::layout(std::string_view utf8, const font_s& font, const TextStyle& style) const {
    const double pixels = std::clamp(device.scale * font.size * device.dpi / 160, 1.0, kLargestPixels);
    const Owned<PangoFontDescription> description(pango_font_description_new());
    pango_font_description_set_family(description.get(), repairedUtf8(font.family).c_str());
    pango_font_description_set_absolute_size(description.get(), pixels * PANGO_SCALE);

    std::string text = repairedUtf8(utf8);
    const Owned<PangoAttrList> attributes(pango_attr_list_new());
    pango_attr_list_insert(attributes.get(), pango_attr_insert_hyphens_new(FALSE));
    Owned<PangoLayout> layout(pango_layout_new(context.get()));
    pango_layout_set_attributes(layout.get(), attributes.get());
    pango_layout_set_font_description(layout.get(), description.get());
    pango_layout_set_alignment(layout.get(), alignment(style.align));
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    if (style.wrap == Wrap::None) {
        std::replace(text.begin(), text.end(), '\n', ' ');
        std::replace(text.begin(), text.end(), '\r', ' ');
        pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
        pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    }
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    return layout;
}

/// Draws the lines of a layout whose top left corner is `origin`. A line that begins below `visible` is not drawn.
void Text::Engine::drawLines(Screen& screen, PangoLayout* layout, Point origin, Rect visible, Rgb colour) {
    const Owned<PangoLayoutIter> lines(pango_layout_get_iter(layout));
    do {
        PangoRectangle ink;
        PangoRectangle logical;
        pango_layout_iter_get_line_extents(lines.get(), &ink, &logical);
        if (origin.y + PANGO_PIXELS(logical.y) >= visible.bottom()) return;
        const Rect inked = pixelsAround(ink, origin).intersected(visible);
        if (inked.empty()) continue;
        const Point start{unitsBetween(inked.x, origin.x, logical.x),
                          unitsBetween(inked.y, origin.y, pango_layout_iter_get_baseline(lines.get()))};
        drawLine(screen, pango_layout_iter_get_line_readonly(lines.get()), start, inked, colour);
    } while (pango_layout_iter_next_line(lines.get()));
}

/// Draws one line through a mask of its visible ink; `start` of its baseline is in Pango units from the top left of
/// `inked`.
void Text::Engine::drawLine(Screen& screen, PangoLayoutLine* line, Point start, Rect inked, Rgb colour) {
    mask.assign(static_cast<std::size_t>(inked.w) * static_cast<std::size_t>(inked.h), 0);
    FT_Bitmap bitmap{};
    bitmap.width = static_cast<unsigned>(inked.w);
    bitmap.rows = static_cast<unsigned>(inked.h);
    bitmap.pitch = inked.w;
    bitmap.buffer = mask.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    pango_ft2_render_layout_line_subpixel(&bitmap, line, start.x, start.y);
    screen.tint({inked.x, inked.y}, {mask.data(), inked.w, inked.size()}, inked, colour);
}

Text::Text(const Device& device) : device_(device) {}

Text::~Text() = default;

std::unique_ptr<font_s> Text::open(const char* family, int size) {
    if (size <= 0) return nullptr;
    const FontCatalog& catalog = engine().catalog;
    return std::make_unique<font_s>(font_s{catalog.resolve(family == nullptr ? "" : family), size});
}

const char* Text::defaultFamily(int index) const { return engine().catalog.defaultFamily(index).c_str(); }

void Text::draw(Screen& screen, Rect box, std::string_view utf8, const font_s& font, const TextStyle& style) {
    const Rect visible = box.intersected(screen.pixels().bounds());
    if (utf8.empty() || visible.empty() || engine().catalog.empty()) return;
    const Owned<PangoLayout> layout = engine().layout(utf8, font, style);
    pango_layout_set_width(layout.get(), std::min(box.w, kFarthest) * PANGO_SCALE);
    int top = box.y;
    if (style.wrap == Wrap::None) {
        int height = 0;
        pango_layout_get_pixel_size(layout.get(), nullptr, &height);
        top += (box.h - height) / 2;
    }
    const Point origin{std::max(box.x, -kFarthest), std::max(top, -kFarthest)};
    engine().drawLines(screen, layout.get(), origin, visible, style.colour);
}

TextBlock Text::layOut(std::string_view utf8, const font_s& font, int width) {
    if (engine().catalog.empty()) return TextBlock(nullptr);
    Owned<PangoLayout> layout = engine().layout(utf8, font, {});
    pango_layout_set_width(layout.get(), std::clamp(width, 1, kFarthest) * PANGO_SCALE);
    return TextBlock(layout.release());
}

void Text::draw(Screen& screen, Point topLeft, const TextBlock& block, Rect clip, Rgb colour) {
    const Rect visible = clip.intersected(screen.pixels().bounds());
    if (block.layout() == nullptr || visible.empty()) return;
    engine().drawLines(screen, block.layout(), topLeft, visible, colour);
}

Size Text::measure(std::string_view utf8, const font_s& font, int width) {
    if (engine().catalog.empty()) return {};
    const Owned<PangoLayout> layout = engine().layout(utf8, font, {});
    if (width > 0) pango_layout_set_width(layout.get(), std::min(width, kFarthest) * PANGO_SCALE);
    Size size;
    pango_layout_get_pixel_size(layout.get(), &size.w, &size.h);
    return size;
}

const std::vector<std::string>& Text::families() { return engine().catalog.families(); }

std::string Text::sample(const std::string& family) { return fontSample(engine().catalog.config(), family); }

Text::Engine& Text::engine() const {
    if (engine_ == nullptr) engine_ = std::make_unique<Engine>(device_);
    return *engine_;
}

}  // namespace host
