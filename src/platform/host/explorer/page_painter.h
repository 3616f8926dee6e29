#pragma once

#include <string>

#include "platform/host/explorer/page_layout.h"
#include "platform/host/files/storage.h"
#include "platform/host/screen/bitmap_record.h"
#include "platform/host/touch/desk.h"

namespace host {

/// Paints the parts of the explorer's page into the screen buffer; refreshes nothing but a tile's frame.
class PagePainter {
public:
    PagePainter(const Desk& desk, const PageLayout& layout);

    /// The program's name, and a notice between it and the buttons.
    void title(const std::string& notice, bool withButton);

    void newPicture(const Rect& tile);
    /// A null thumbnail is a damaged picture.
    void picture(const Rect& tile, const bitmap_s* thumbnail, const std::string& caption);
    void pageNumber(int page, int pages);

    /// Shows that a tile is pressed, or no longer, and refreshes just its frame: a fast refresh of the whole tile
    /// would turn its thumbnail to black and white.
    void press(const Rect& tile, bool pressed);

private:
    void framed(const Rect& sheet);
    void centred(const Rect& room, const bitmap_s& picture);
    void caption(const Rect& tile, const std::string& text);
    /// A sheet of the page's shape.
    [[nodiscard]] Rect emptySheet(const Rect& room) const;

    Desk desk_;
    const PageLayout& layout_;
};

/// What stands below a thumbnail: the time of the last change for a picture that the program named, else the name.
[[nodiscard]] std::string captionOf(const PictureEntry& picture);

}  // namespace host
