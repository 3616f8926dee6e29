#include "platform/host/screen/glyph_cache.h"

#include <pango/pangoft2.h>

#include <algorithm>

namespace host {
namespace {

/// The glyphs of a few fonts at large sizes; beyond it the cache starts anew.
constexpr std::size_t kMostBytes = 16U << 20U;
/// Hinting may move the edge of a glyph beyond the ink that its outline promises.
constexpr int kHintingMargin = 2;
/// Rows end at a whole block, so that whoever lays the mask down finds no remainder.
constexpr int kBlock = 8;

GlyphMask rendered(PangoFont* font, PangoGlyph glyph) {
    PangoRectangle ink;
    pango_font_get_glyph_extents(font, glyph, &ink, nullptr);
    pango_extents_to_pixels(&ink, nullptr);
    if (ink.width <= 0 || ink.height <= 0) return {};

    const int width = (ink.width + 2 * kHintingMargin + kBlock - 1) / kBlock * kBlock;
    GlyphMask mask{{ink.x - kHintingMargin, ink.y - kHintingMargin}, {width, ink.height + 2 * kHintingMargin}, {}};
    mask.rows.resize(static_cast<std::size_t>(mask.size.w) * static_cast<std::size_t>(mask.size.h));
    FT_Bitmap bitmap{};
    bitmap.width = static_cast<unsigned>(mask.size.w);
    bitmap.rows = static_cast<unsigned>(mask.size.h);
    bitmap.pitch = mask.size.w;
    bitmap.buffer = mask.rows.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    PangoGlyphInfo info{glyph, {0, 0, 0}, {}};
    int cluster = 0;
    PangoGlyphString string{1, &info, &cluster, 1};
    pango_ft2_render(&bitmap, font, &string, -mask.offset.x, -mask.offset.y);
    return mask;
}

}  // namespace

const GlyphMask& GlyphCache::mask(PangoFont* font, PangoGlyph glyph) {
    if (last_ == nullptr || last_->font.get() != font) last_ = &glyphsOf(font);
    const auto known = last_->masks.find(glyph);
    if (known != last_->masks.end()) return known->second;

    GlyphMask mask = rendered(font, glyph);
    if (bytes_ + mask.rows.size() > kMostBytes) {
        fonts_.clear();
        bytes_ = 0;
        last_ = &glyphsOf(font);
    }
    bytes_ += mask.rows.size();
    return last_->masks.emplace(glyph, std::move(mask)).first->second;
}

GlyphCache::FontGlyphs& GlyphCache::glyphsOf(PangoFont* font) {
    FontGlyphs& glyphs = fonts_[font];
    if (glyphs.font == nullptr) glyphs.font.reset(PANGO_FONT(g_object_ref(font)));
    return glyphs;
}

}  // namespace host
