#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/host/panel/panel.h"
#include "platform/host/screen/screen.h"
#include "platform/host/touch/modal.h"

namespace host {

/// The modals that are open, the newest on top, and what lies under each of them.
class Modals {
public:
    Modals(Screen& screen, Panel& panel, Display& display);

    /// Paints and refreshes the modal over what the screen shows now.
    void open(std::unique_ptr<Modal> modal);

    /// The one that takes input; null when none is open.
    [[nodiscard]] Modal* top() const;

    /// Puts back and refreshes what lay under a modal that has closed, and returns its callback. Nothing when no
    /// modal has closed.
    [[nodiscard]] std::optional<Callback> takeClosed();

    /// Takes the open modals off the screen buffer so that an event can be drawn below them …
    void lift();
    /// … and paints and refreshes them over whatever was drawn. Does nothing unless they are lifted.
    void lower();

private:
    struct Layer {
        std::unique_ptr<Modal> modal;
        BitmapPtr under;
    };
    void cover(Layer& layer);
    void updateTextInput();

    Screen& screen_;
    Panel& panel_;
    Display& display_;
    std::vector<Layer> layers_;
    bool lifted_ = false;
};

}  // namespace host
