#pragma once

#include <string>

#include "colour/button.h"

/// A button with a round swatch of its colour: an entry of the palette (type 0, ringed while it is the current
/// colour) or the toolbar's current-colour button (type 1, whose arrow tells whether the palette is open).
class ColorButton : public Button {
public:
    static constexpr int kPaletteEntry = 0;
    static constexpr int kCurrentColor = 1;
    /// The colour of a button without a swatch.
    static constexpr int kNoColor = -1;

    ColorButton() = default;

    /// A new button. `name` is shown while it is wrapped, `second_name` while it is not; an empty name gives a
    /// white button. A palette entry takes its colour from the command's low 24 bits. Owned by the caller for the life
    /// of the process.
    static ColorButton* Create(std::string name, std::string second_name, int command, irect_s rect, int type);

    void SetType(int type) { type_ = type; }
    void SetWrapped(bool wrapped) { wrapped_ = wrapped; }
    void SetColor(int color) { color_ = color; }
    [[nodiscard]] int GetColor() const { return color_; }
    void SetSelected(bool selected) { selected_ = selected; }

    /// As a plain button; a click also toggles the wrapped flag.
    int Handler(int type, int x, int y) override;
    void Draw() override;

private:
    void drawDot() const;

    int type_ = kPaletteEntry;
    bool wrapped_ = true;
    int color_ = kNoColor;
    bool selected_ = false;
};
