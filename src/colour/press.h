#pragma once

#include <vector>

#include "colour/button.h"

/// The steps of a press that the toolbar and the popups share. `pressed` is the owner's button that took the
/// pointer-down; each step that changes a button's look paints it and refreshes just its rectangle.
namespace press {

/// Paints the button and refreshes its rectangle.
void repaint(Button& button);
void refresh(const irect_s& rect);

/// What comes before the release. A pointer-down is offered to the buttons in order until one takes it: 1 when one
/// did, else 0 and `pressed` stays. A move answers 1 during a press, which ends when the pointer has left its button.
/// 0 for anything else.
int follow(const std::vector<Button*>& buttons, Button*& pressed, int type, int x, int y);

/// Where a popup's choice is logged.
struct LogPlace {
    const char* file;
    int line;
    const char* function;
};

/// Ends a popup's press: the button's command for a click, which is logged, else 1.
int release(Button*& pressed, int x, int y, const LogPlace& place);

/// Writes "Set tool" with the command.
void log(const LogPlace& place, int command);

}  // namespace press
