#pragma once

#include <pango/pango.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/host/screen/tint.h"

namespace host {

/// A glyph as coverage, with its top left corner seen from the pen's place on the baseline. Empty for a blank.
struct GlyphMask {
    Point offset;
    Size size;
    std::vector<std::uint8_t> rows;

    [[nodiscard]] Coverage coverage() const { return {rows.data(), size.w, size}; }
};

/// Glyphs as Pango renders them, each rendered once. So a text costs no more than its layout and its ink.
class GlyphCache {
public:
    /// Valid until the next call.
    [[nodiscard]] const GlyphMask& mask(PangoFont* font, PangoGlyph glyph);

private:
    struct Unref {
        void operator()(PangoFont* font) const { g_object_unref(font); }
    };
    /// Holds its font, lest another one be made at the same address.
    struct FontGlyphs {
        std::unique_ptr<PangoFont, Unref> font;
        std::map<PangoGlyph, GlyphMask> masks;
    };

    FontGlyphs& glyphsOf(PangoFont* font);

    std::map<PangoFont*, FontGlyphs> fonts_;
    FontGlyphs* last_ = nullptr;
    std::size_t bytes_ = 0;
};

}  // namespace host
