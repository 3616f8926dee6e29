#pragma once

#include <vector>

#include "colour/button.h"

namespace lumora::colour {
class Controller;
}

/// The palette popup: eight round swatches in two rows, colours or greys by panel, the current one ringed. The
/// controller opens and closes it.
class ColorToolbar {
public:
    /// Lays the popup out; does nothing the second time.
    void Init();
    /// Rings exactly the swatches of that colour (0xRRGGBB). Paints nothing.
    void SetColor(int color);
    void SetVisible(bool visible) { visible_ = visible; }
    /// Follows a tap; a chosen colour comes with kPaletteColorFlag. Does not look at the visible flag.
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
