#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/explorer/page_layout.h"
#include "platform/host/explorer/page_painter.h"
#include "platform/host/explorer/thumbnails.h"
#include "platform/host/files/storage.h"
#include "platform/host/keep/keeper.h"
#include "platform/host/touch/desk.h"
#include "platform/host/touch/touch_button.h"

namespace host {

/// What a person chose in the explorer.
struct ExplorerActions {
    std::function<void()> create;
    std::function<void(const std::string& devicePath)> open;
    std::function<void()> leave;
};

/// Something on the explorer's screen that a person can tap.
struct Tile {
    enum class Kind { NewPicture, Picture, Notice, Exit, PreviousPage, NextPage };
    Kind kind;
    Rect area;
    std::string devicePath{};  ///< of a picture
};

/// The image explorer's screen: "new picture" first, then thumbnails, newest first, in pages with buttons.
/// Loads only what the page shows. A damaged picture shows the broken-image icon and cannot be opened, whatever it was
/// when the page was painted: the application would take it for a white page. What the keeper has to tell stands in the
/// title until the person does something, with a button where something can be done about it.
class Explorer {
public:
    Explorer(const Desk& desk, const Storage& storage, Keeper& keeper, ExplorerActions actions);
    Explorer(const Explorer&) = delete;
    Explorer& operator=(const Explorer&) = delete;

    /// Reads the folder again, paints the page and refreshes the whole panel.
    void show();

    /// Toolkit event while the explorer has the screen: 23 and 43 show it, pointer events press its tiles and
    /// buttons. Returns 1 when it took the event.
    int handle(int type, int par1, int par2);

    /// What can be tapped on the page as it is shown: the tiles in their order, then the buttons.
    [[nodiscard]] std::vector<Tile> tiles() const;

private:
    void readFolder();
    void fillPage();
    void paint();
    void pointer(int type, Point at);
    /// True when the event made a button act.
    bool pressButtons(int type, Point at);
    void pressTile(int type, Point at);
    void act(const Tile& tile);
    void openPicture(const std::string& devicePath);
    void newPicture();
    /// Goes on unless something speaks against it, which is then told.
    void goOn(std::optional<Notice> against, std::function<void()> go);
    void tell(Notice notice);
    /// What the notice's button does.
    void answer();
    void turnTo(int page);

    [[nodiscard]] int pages() const;
    [[nodiscard]] bool hasPrevious() const { return page_ > 0; }
    [[nodiscard]] bool hasNext() const { return page_ + 1 < pages(); }

    Desk desk_;
    const Storage& storage_;
    Keeper& keeper_;
    ExplorerActions actions_;
    PageLayout layout_;
    PagePainter painter_;
    TouchButton exit_;
    TouchButton previous_;
    TouchButton next_;

    std::vector<PictureEntry> pictures_;
    Thumbnails thumbnails_;
    int page_ = 0;
    std::vector<Tile> grid_;
    std::optional<std::size_t> pressed_;
    Notice notice_;
    TouchButton noticeButton_;
    std::function<void()> heldUp_;  ///< what the notice has held up
};

}  // namespace host
