#pragma once

#include <string>

#include "platform/host/base/geometry.h"
#include "platform/host/screen/text.h"
#include "platform/host/touch/desk.h"

namespace host {

/// What a button shows. The icon is a theme picture; where the theme has none of that name or it does not fit, the
/// label stands in its place. A label too wide for its button is set smaller until it fits.
struct ButtonFace {
    std::string label;
    std::string icon{};
    font_s font;
};

/// A rectangular button that follows a touch: it looks pressed from a pointer-down inside it, lets go when the
/// pointer leaves it, and acts when the pointer is lifted inside it. An up without that down does nothing.
class TouchButton {
public:
    TouchButton(Rect box, ButtonFace face);

    [[nodiscard]] const Rect& box() const { return box_; }
    [[nodiscard]] const std::string& label() const { return face_.label; }
    [[nodiscard]] bool pressed() const { return pressed_; }

    // What these change shows with the next paint.

    void setFace(std::string label, std::string icon = {});
    /// Marks a choice in force (a locked shift, the present size) by a thicker frame.
    void setMarked(bool marked) { marked_ = marked; }

    // Both paint into the screen buffer and refresh nothing.

    /// Onto white ground.
    void paint(const Desk& desk);
    /// Over what the box shows.
    void repaint(const Desk& desk);

    /// One pointer event; repaints and refreshes the box, fast, where the look changes. True when the button acts.
    [[nodiscard]] bool pointer(const Desk& desk, int type, Point at);

private:
    void show(const Desk& desk, bool pressed);
    void paintFace(const Desk& desk, Rect inside);

    Rect box_;
    ButtonFace face_;
    int fittedSize_ = 0;  ///< font size at which the label fits; 0 while not known
    bool pressed_ = false;
    bool marked_ = false;
};

/// Paints the sheet on which a modal stands into the screen buffer: white inside a round frame only, so that the
/// picture below stays visible outside its corners.
void paintSheet(const Desk& desk, Rect area);

}  // namespace host
