#include "platform/host/screen/text_block.h"

#include <pango/pango.h>

namespace host {

namespace {

static_assert(TextBlock::kUnits == PANGO_SCALE);

/// Hinting may move the edge of a glyph beyond the ink that its outline promises.
constexpr int kHintingMargin = 2;

struct FreeIterator {
    void operator()(PangoLayoutIter* lines) const { pango_layout_iter_free(lines); }
};

/// The whole pixels around a place of the layout, `down` units further down.
Rect pixels(const PangoRectangle& units, int down) {
    const int left = PANGO_PIXELS_FLOOR(units.x);
    const int top = PANGO_PIXELS_FLOOR(units.y + down);
    return {left, top, PANGO_PIXELS_CEIL(units.x + units.width) - left,
            PANGO_PIXELS_CEIL(units.y + down + units.height) - top};
}

}  // namespace

void TextBlock::Release::operator()(_PangoLayout* layout) const { g_object_unref(layout); }

Size TextBlock::size() const {
    Size size;
    if (layout_ != nullptr) pango_layout_get_pixel_size(layout_.get(), &size.w, &size.h);
    return size;
}

std::vector<TextBlock::Line> TextBlock::lines() const {
    if (layout_ == nullptr) return {};
    std::vector<Line> found;
    const std::unique_ptr<PangoLayoutIter, FreeIterator> at(pango_layout_get_iter(layout_.get()));
    do {
        PangoRectangle ink;
        PangoRectangle box;
        pango_layout_iter_get_line_extents(at.get(), &ink, &box);
        const PangoLayoutLine* line = pango_layout_iter_get_line_readonly(at.get());
        found.push_back({pixels(box, top_), box.y + top_, pixels(ink, top_).inset(-kHintingMargin),
                         static_cast<std::size_t>(line->start_index), static_cast<std::size_t>(line->length)});
    } while (pango_layout_iter_next_line(at.get()));
    return found;
}

Rect TextBlock::cursor(std::size_t offset, bool fromRight) const {
    if (layout_ == nullptr) return {};
    PangoRectangle alongParagraph;
    PangoRectangle against;
    pango_layout_get_cursor_pos(layout_.get(), static_cast<int>(offset), &alongParagraph, &against);
    Rect box = pixels(readsFromRight(offset) == fromRight ? alongParagraph : against, top_);
    box.w = 0;
    return box;
}

std::size_t TextBlock::beside(std::size_t offset, bool fromRight, bool toRight) const {
    if (layout_ == nullptr) return offset;
    int index = 0;
    int trailing = 0;
    pango_layout_move_cursor_visually(layout_.get(), readsFromRight(offset) == fromRight ? TRUE : FALSE,
                                      static_cast<int>(offset), 0, toRight ? 1 : -1, &index, &trailing);
    if (index < 0 || index == G_MAXINT) return offset;
    return behind(index, trailing);
}

std::size_t TextBlock::offsetAt(Point at) const {
    if (layout_ == nullptr) return 0;
    int index = 0;
    int trailing = 0;
    pango_layout_xy_to_index(layout_.get(), at.x * PANGO_SCALE, at.y * PANGO_SCALE - top_, &index, &trailing);
    return behind(index, trailing);
}

/// The library tells a place as a character and how many of them stand before it.
std::size_t TextBlock::behind(int index, int characters) const {
    const char* text = pango_layout_get_text(layout_.get());
    return static_cast<std::size_t>(g_utf8_offset_to_pointer(text + index, characters) - text);
}

bool TextBlock::readsFromRight(std::size_t offset) const {
    if (layout_ == nullptr) return false;
    int line = 0;
    pango_layout_index_to_line_x(layout_.get(), static_cast<int>(offset), FALSE, &line, nullptr);
    PangoLayoutLine* found = pango_layout_get_line_readonly(layout_.get(), line);
    return pango_layout_line_get_resolved_direction(found) == PANGO_DIRECTION_RTL;
}

bool TextBlock::leftToRight() const {
    if (layout_ == nullptr) return true;
    const std::unique_ptr<PangoLayoutIter, FreeIterator> at(pango_layout_get_iter(layout_.get()));
    do {
        const PangoLayoutRun* run = pango_layout_iter_get_run_readonly(at.get());
        if (run != nullptr && run->item->analysis.level != 0) return false;
    } while (pango_layout_iter_next_run(at.get()));
    return true;
}

}  // namespace host
