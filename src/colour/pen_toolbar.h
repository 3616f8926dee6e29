#pragma once

#include <vector>

#include "colour/button.h"

namespace lumora::colour {
class Controller;
}

/// The thickness popup: five buttons in a row, the current thickness in its inverted look. The controller opens and
/// closes it.
class PenToolbar {
public:
    /// Lays the popup out; does nothing the second time.
    void Init();
    /// Marks the button of that thickness, 1 to 5, and no other; outside that range, or before Init, none. Paints
    /// nothing.
    void SetThickness(int thickness);
    void SetVisible(bool visible) { visible_ = visible; }
    /// Follows a tap; a chosen thickness comes as its pen command, 11 to 15. Does not look at the visible flag.
    int Handler(int type, int x, int y);
    /// Paints the popup if it is visible.
    void Draw();

private:
    friend class lumora::colour::Controller;

    std::vector<Button*> buttons_;
    Button* pressed_ = nullptr;
    irect_s rect_{};
    bool visible_ = false;
    SmartBitmap pointer_image_;
};
