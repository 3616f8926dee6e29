#include "platform/host/screen/text_block.h"

#include <pango/pangoft2.h>

#include <algorithm>
#include <cstdint>

namespace host {

namespace {

/// No box is wider than this for the layout, and no place further away, so that both fit Pango's 22.10 units.
constexpr int kFarthest = 1 << 20;
/// Hinting may move the edge of a glyph beyond the ink that its outline promises.
constexpr int kHintingMargin = 2;

/// The whole pixels around a place of the layout.
Rect pixels(const PangoRectangle& units) {
    const int left = PANGO_PIXELS_FLOOR(units.x);
    const int top = PANGO_PIXELS_FLOOR(units.y);
    return {left, top, PANGO_PIXELS_CEIL(units.x + units.width) - left,
            PANGO_PIXELS_CEIL(units.y + units.height) - top};
}

template <typename Visit>
void forEachLine(PangoLayout* layout, Visit visit) {
    if (layout == nullptr) return;
    const std::unique_ptr<PangoLayoutIter, decltype(&pango_layout_iter_free)> at(pango_layout_get_iter(layout),
                                                                                 pango_layout_iter_free);
    do visit(at.get());
    while (pango_layout_iter_next_line(at.get()));
}

/// Pango ends the process over a font that cannot be opened when it is first drawn with, such as one whose file has
/// gone or is damaged. So each is tried just before; from then on Pango holds it open.
bool opens(PangoFont* font) {
    static const GQuark kOpened = g_quark_from_static_string("colour-opened");
    static const FT_Library library = [] {
        FT_Library made = nullptr;
        FT_Init_FreeType(&made);
        return made;
    }();
    if (!PANGO_IS_FC_FONT(font) || g_object_get_qdata(G_OBJECT(font), kOpened) != nullptr) return true;
    const FcPattern* const pattern = pango_fc_font_get_pattern(PANGO_FC_FONT(font));
    FcChar8* file = nullptr;
    int index = 0;
    FT_Face face = nullptr;
    if (FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch) return false;
    FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
    if (FT_New_Face(library, reinterpret_cast<const char*>(file), index, &face) != 0) return false;
    FT_Done_Face(face);
    g_object_set_qdata(G_OBJECT(font), kOpened, font);
    return true;
}

bool fontsOpen(const PangoLayoutLine* line) {
    for (const GSList* each = line->runs; each != nullptr; each = each->next)
        if (!opens(static_cast<const PangoLayoutRun*>(each->data)->item->analysis.font)) return false;
    return true;
}

/// Pango renders coverage, of no more than can be seen: a line of large letters may be far larger than the screen.
void drawLine(Screen& screen, PangoLayoutIter* line, Point origin, Rect visible, Rgb colour) {
    PangoRectangle ink;
    PangoRectangle box;
    pango_layout_iter_get_line_extents(line, &ink, &box);
    Rect area = pixels(ink).inset(-kHintingMargin);
    area.x += origin.x;
    area.y += origin.y;
    area = area.intersected(visible);
    if (area.empty() || !fontsOpen(pango_layout_iter_get_line_readonly(line))) return;

    std::vector<std::uint8_t> coverage(static_cast<std::size_t>(area.w) * static_cast<std::size_t>(area.h));
    FT_Bitmap bitmap{};
    bitmap.width = static_cast<unsigned>(area.w);
    bitmap.rows = static_cast<unsigned>(area.h);
    bitmap.pitch = area.w;
    bitmap.buffer = coverage.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    pango_ft2_render_layout_line_subpixel(&bitmap, pango_layout_iter_get_line_readonly(line),
                                          (origin.x - area.x) * PANGO_SCALE + box.x,
                                          (origin.y - area.y) * PANGO_SCALE + pango_layout_iter_get_baseline(line));
    screen.tint({area.x, area.y}, {coverage.data(), area.w, area.size()}, area, colour);
}

}  // namespace

TextBlock::TextBlock(_PangoLayout* layout) : layout_(layout, g_object_unref) {}

void TextBlock::fit(int width, Align align) {
    if (layout_ == nullptr) return;
    constexpr PangoAlignment kAlignments[] = {PANGO_ALIGN_LEFT, PANGO_ALIGN_CENTER, PANGO_ALIGN_RIGHT};
    pango_layout_set_alignment(layout_.get(), kAlignments[static_cast<int>(align)]);
    // A line fits that is as wide in whole pixels: slanted scripts leave fractions.
    const int rounding = pango_layout_get_single_paragraph_mode(layout_.get()) != FALSE ? PANGO_SCALE / 2 - 1 : 0;
    pango_layout_set_width(layout_.get(), std::clamp(width, 1, kFarthest) * PANGO_SCALE + rounding);
}

void TextBlock::fitHeight(int height) {
    if (layout_ == nullptr) return;
    pango_layout_set_height(layout_.get(), std::clamp(height, 1, kFarthest) * PANGO_SCALE);
    pango_layout_set_ellipsize(layout_.get(), PANGO_ELLIPSIZE_END);
}

Size TextBlock::size() const {
    Size size;
    if (layout_ != nullptr) pango_layout_get_pixel_size(layout_.get(), &size.w, &size.h);
    return size;
}

Size TextBlock::sizeInMiddle() const {
    if (layout_ == nullptr) return {};
    PangoRectangle ink;
    PangoRectangle box;
    pango_layout_get_pixel_extents(layout_.get(), &ink, &box);
    const int above = box.height / 2 - ink.y;
    const int below = ink.y + ink.height - box.height / 2;
    return {box.width, 2 * std::max(above, below)};
}

std::vector<Rect> TextBlock::lines() const {
    std::vector<Rect> boxes;
    forEachLine(layout_.get(), [&boxes](PangoLayoutIter* line) {
        PangoRectangle box;
        pango_layout_iter_get_line_extents(line, nullptr, &box);
        boxes.push_back(pixels(box));
    });
    return boxes;
}

Rect TextBlock::cursor(std::size_t offset, bool fromRight) const {
    if (layout_ == nullptr) return {};
    PangoRectangle alongParagraph;
    PangoRectangle against;
    pango_layout_get_cursor_pos(layout_.get(), static_cast<int>(offset), &alongParagraph, &against);
    Rect box = pixels(readsFromRight(offset) == fromRight ? alongParagraph : against);
    box.w = 0;
    return box;
}

std::size_t TextBlock::lineOf(std::size_t offset) const {
    if (layout_ == nullptr) return 0;
    int line = 0;
    pango_layout_index_to_line_x(layout_.get(), static_cast<int>(offset), FALSE, &line, nullptr);
    return static_cast<std::size_t>(line);
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
    pango_layout_xy_to_index(layout_.get(), at.x * PANGO_SCALE, at.y * PANGO_SCALE, &index, &trailing);
    return behind(index, trailing);
}

void TextBlock::draw(Screen& screen, Point topLeft, Rect clip, Rgb colour, LineSpan lines) const {
    const Rect visible = clip.intersected(screen.pixels().bounds());
    forEachLine(layout_.get(), [&, number = std::size_t{0}](PangoLayoutIter* line) mutable {
        if (number >= lines.first && number < lines.end) drawLine(screen, line, topLeft, visible, colour);
        ++number;
    });
}

void TextBlock::drawInside(Screen& screen, Rect box, Align align, Rgb colour) {
    if (layout_ == nullptr || box.intersected(screen.pixels().bounds()).empty()) return;
    fit(box.w, align);
    PangoRectangle ink;
    pango_layout_get_pixel_extents(layout_.get(), &ink, nullptr);
    const bool oneLine = pango_layout_get_single_paragraph_mode(layout_.get()) != FALSE;
    const int down = oneLine ? (box.h - size().h) / 2 : std::max(-ink.y, 0);
    draw(screen, {std::max(box.x, -kFarthest), std::max(box.y + down, -kFarthest)}, box, colour);
}

bool TextBlock::readsFromRight(std::size_t offset) const {
    PangoLayoutLine* line = pango_layout_get_line_readonly(layout_.get(), static_cast<int>(lineOf(offset)));
    return pango_layout_line_get_resolved_direction(line) == PANGO_DIRECTION_RTL;
}

/// The library tells a place as a character and how many of them stand before it.
std::size_t TextBlock::behind(int index, int characters) const {
    const char* text = pango_layout_get_text(layout_.get());
    return static_cast<std::size_t>(g_utf8_offset_to_pointer(text + index, characters) - text);
}

}  // namespace host
