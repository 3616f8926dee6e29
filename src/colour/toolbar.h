#pragma once

#include <vector>

#include "colour/button.h"
#include "colour/color_button.h"

/// The band across the top with its nine buttons: turns taps into commands, marks the current tool with a bar on
/// its bottom rule, shows the current colour and thickness, and gives the feedback of a press.
class Toolbar {
public:
    /// Builds the buttons; does nothing the second time.
    void Init();

    /// Marks the tool's button; any pen code means the pen button. An unknown tool changes nothing.
    void SetTool(int tool);
    /// The pen colour, 0xRRGGBB.
    [[nodiscard]] int GetColor() const;
    /// Also puts the colour button back into its closed look.
    void SetColor(int color);
    /// 1 to 5.
    [[nodiscard]] int GetPenThickness() const;
    /// Also puts the pen button back into its normal look.
    void SetPenThickness(int thickness);

    [[nodiscard]] const irect_s& GetRect() const { return rect_; }

    /// The command of a tapped button, 1 for another event of a press, else 0. Refreshes what it changes.
    int Handler(int type, int x, int y);
    /// Paints the band; refreshes nothing.
    void Draw();

private:
    void layOutButtons();
    /// The first button with that command, any pen code meaning the pen button; null when there is none.
    [[nodiscard]] Button* buttonOf(int command) const;
    [[nodiscard]] ColorButton* colorButton() const;
    int release(int x, int y);
    void drawMarker() const;

    std::vector<Button*> buttons_;
    std::vector<int> separators_;
    Button* pressed_ = nullptr;
    Button* tool_button_ = nullptr;
    int rule_y_ = 0;
    int separator_length_ = 0;
    int marker_height_ = 0;
    int marker_width_ = 0;
    irect_s rect_{};
};
