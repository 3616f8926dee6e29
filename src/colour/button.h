#pragma once

#include <string>

#include "platform/smart_bitmap.h"
#include "platform/vistrel.h"

/// The theme's picture of that name; the "broken_image" picture where the theme has none.
SmartBitmap themePicture(const std::string& name);

/// A touch button with a normal and a focused look. Follows one press from pointer-down to pointer-up and tells
/// its owner of a click. The focused look is the feedback of a press and, forced, the mark of a current choice.
/// Paints only; the owner refreshes.
class Button {
public:
    Button() = default;

    /// A new button with two theme pictures. Owned by the caller, who keeps it for the life of the process.
    static Button* Create(std::string name, std::string focused_name, int command, irect_s rect);

    void SetPosition(irect_s rect) { rect_ = rect; }
    [[nodiscard]] irect_s GetRect() const { return rect_; }
    void SetCommand(int command) { command_ = command; }
    [[nodiscard]] int GetCommand() const { return command_; }
    /// Shares both pictures.
    void SetImages(SmartBitmap& image, SmartBitmap& focused_image);
    /// Sets the look until the next pointer-down that reaches the button.
    void SetFocusedForce(bool focused) { focused_ = focused; }

    /// 1 for a down inside, for a move that leaves the pressed button and for an up inside it (a click); else 0. A
    /// press that has left the button is over.
    virtual int Handler(int type, int x, int y);
    /// Paints the look of the moment centred on white; nothing at all when its picture is empty.
    virtual void Draw();

protected:
    /// Both edges count: a finger on the line between two buttons hits one of them.
    [[nodiscard]] bool contains(int x, int y) const;
    void drawCentred(const SmartBitmap& image) const;

    SmartBitmap image_;
    SmartBitmap focused_image_;
    irect_s rect_{};
    int command_ = 0;
    bool focused_ = false;
};
