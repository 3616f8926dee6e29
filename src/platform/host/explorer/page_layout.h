#pragma once

#include "platform/host/base/device.h"

namespace host {

/// Where things stand on the explorer's screen: a title bar, a grid of tiles, and a bar to turn pages. Tile 0 of page
/// 0 is "new picture". As many tiles as stay large enough for a finger and an eye: twelve on a 1404 × 1872 panel.
class PageLayout {
public:
    explicit PageLayout(const Device& device);

    [[nodiscard]] Rect titleBar() const { return titleBar_; }
    [[nodiscard]] Rect exitButton() const { return exitButton_; }
    /// Beside the exit button, for what can be done about a notice.
    [[nodiscard]] Rect noticeButton() const;
    [[nodiscard]] Rect previousButton() const;
    [[nodiscard]] Rect nextButton() const;

    /// Tiles of a full page.
    [[nodiscard]] int tilesOnPage() const { return columns_ * rows_; }
    /// Pages that so many tiles take, at least 1.
    [[nodiscard]] int pages(int tiles) const;

    /// The tile in that place of the page, row by row.
    [[nodiscard]] Rect tile(int place) const;
    /// Inside a tile: where its frame is drawn while it is pressed, and nothing else ever.
    [[nodiscard]] int pressMargin() const { return pressMargin_; }
    [[nodiscard]] Rect picture(const Rect& tile) const;
    [[nodiscard]] Rect caption(const Rect& tile) const;

private:
    Rect titleBar_;
    Rect exitButton_;
    Rect grid_;
    Rect pageBar_;
    int columns_;
    int rows_;
    int gap_;
    int pageButtonWidth_;
    int pressMargin_;
    int captionHeight_;
};

}  // namespace host
