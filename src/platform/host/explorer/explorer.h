#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/host/desk/desk.h"
#include "platform/host/files/storage.h"

namespace host {

/// What a person chose in the explorer.
struct ExplorerActions {
    std::function<void()> create;
    std::function<void(const std::string& devicePath)> open;
    std::function<void()> leave;
};

/// The image explorer's screen: "new picture" first, then thumbnails, newest first, in pages with buttons.
/// Loads only what the page shows.
class Explorer {
public:
    Explorer(const Desk& desk, const Storage& storage, ExplorerActions actions);

    /// Reads the folder again, paints the page and refreshes the whole panel.
    void show();

    /// Toolkit event while the explorer has the screen: 23 and 43 show it, pointer events press its tiles and
    /// buttons. Returns 1 when it took the event.
    int handle(int type, int par1, int par2);

private:
    Desk desk_;
    const Storage& storage_;
    ExplorerActions actions_;
};

}  // namespace host
