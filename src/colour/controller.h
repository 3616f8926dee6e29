#pragma once

#include <string>

#include "colour/canvas.h"
#include "colour/color_toolbar.h"
#include "colour/pen_toolbar.h"
#include "colour/toolbar.h"
#include "platform/image_explorer.h"
#include "platform/vistrel.h"

namespace lumora::colour {

/// The application: answers the image explorer, owns the parts of the screen, routes every event to the part it
/// belongs to and carries out the commands. One for the process, made on first use and never destroyed.
class Controller : public common_image_explorer::ICallback {
public:
    Controller() = default;

    /// The one controller, made on first use.
    static Controller* Instance();
    /// The toolkit's ways in; its callbacks carry no context.
    static int staticHandler(int type, int par1, int par2);
    static void staticRemoveHandler(int button);

    void open(const std::string& path) override;
    void create() override;

    /// Lays out the screen, once in the process.
    void Init();
    /// Takes every event while a picture is edited. The answer of the part that took it, the command of a choice, 1 for
    /// a claim or repaint, else 0.
    int Handler(int type, int par1, int par2);

    /// The delete dialog's answer: 2 deletes, anything else goes on editing.
    void removeHandler(int button);
    /// Removes the picture's file and empties the canvas.
    void removeImage();

private:
    void showScreen();
    void takeOver();
    void repaint();
    int paletteHandler(int type, int par1, int par2);
    int thicknessHandler(int type, int par1, int par2);
    int command(int code);
    void openThickness(int code);
    void openPalette();
    void leave();
    void askToDelete();

    ColorToolbar color_toolbar_;
    PenToolbar pen_toolbar_;
    Toolbar toolbar_;
    Canvas canvas_;
    /// The explorer's handler while a picture is edited.
    event_handler_t previous_handler_ = nullptr;
};

}  // namespace lumora::colour
