#include "platform/host/explorer/page_layout.h"

#include <algorithm>

namespace host {

namespace {

// Design units, 300 to the inch.
constexpr int kTitleHeight = 136;
constexpr int kPageBarHeight = 132;
constexpr int kButtonHeight = 108;
constexpr int kPageButtonWidth = 300;
constexpr int kGap = 20;
constexpr int kPressMargin = 14;
constexpr int kCaptionHeight = 48;
// A thumbnail of a page is then about as large as a stamp, 25 mm high.
constexpr int kTileWidth = 420;
constexpr int kTileHeight = 380;

int howMany(int room, int size) { return std::max(room / std::max(size, 1), 1); }

}  // namespace

PageLayout::PageLayout(const Device& device)
    : gap_(device.designToPixel(kGap)),
      pageButtonWidth_(std::min(device.designToPixel(kPageButtonWidth), device.width / 3)),
      pressMargin_(device.designToPixel(kPressMargin)),
      captionHeight_(device.designToPixel(kCaptionHeight)) {
    const int titleHeight = std::min(device.designToPixel(kTitleHeight), device.height / 4);
    const int barHeight = std::min(device.designToPixel(kPageBarHeight), device.height / 4);
    const int button = std::min(device.designToPixel(kButtonHeight), titleHeight);
    titleBar_ = {0, 0, device.width, titleHeight};
    exitButton_ = {device.width - gap_ - button, (titleHeight - button) / 2, button, button};
    pageBar_ = {0, device.height - barHeight, device.width, barHeight};
    grid_ = {gap_, titleHeight + gap_, device.width - gap_, device.height - titleHeight - barHeight - gap_};
    columns_ = howMany(grid_.w, device.designToPixel(kTileWidth));
    rows_ = howMany(grid_.h, device.designToPixel(kTileHeight));
}

Rect PageLayout::noticeButton() const {
    const int width = std::min(pageButtonWidth_, titleBar_.w / 4);
    return {exitButton_.x - gap_ - width, exitButton_.y, width, exitButton_.h};
}

Rect PageLayout::previousButton() const {
    const int height = std::max(pageBar_.h - gap_, 1);
    return {gap_, pageBar_.y, pageButtonWidth_, height};
}

Rect PageLayout::nextButton() const {
    Rect button = previousButton();
    button.x = pageBar_.w - gap_ - button.w;
    return button;
}

int PageLayout::pages(int tiles) const { return std::max((tiles + tilesOnPage() - 1) / tilesOnPage(), 1); }

Rect PageLayout::tile(int place) const {
    const int column = place % columns_;
    const int row = place / columns_;
    // Each tile has its gap at the right and below; edges are worked out one by one, so rounding never adds up.
    const int left = grid_.x + grid_.w * column / columns_;
    const int right = grid_.x + grid_.w * (column + 1) / columns_ - gap_;
    const int top = grid_.y + grid_.h * row / rows_;
    const int bottom = grid_.y + grid_.h * (row + 1) / rows_ - gap_;
    return {left, top, std::max(right - left, 1), std::max(bottom - top, 1)};
}

Rect PageLayout::picture(const Rect& tile) const {
    Rect room = tile.inset(pressMargin_ + gap_ / 4);
    room.h -= captionHeight_;
    return room;
}

Rect PageLayout::caption(const Rect& tile) const {
    const Rect inside = tile.inset(pressMargin_);
    return {inside.x, static_cast<int>(inside.bottom()) - captionHeight_, inside.w, captionHeight_};
}

}  // namespace host
