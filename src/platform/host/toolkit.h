#pragma once

#include <memory>
#include <vector>

#include "platform/host/base/clock.h"
#include "platform/host/desk/loop.h"
#include "platform/host/desk/modals.h"
#include "platform/host/files/storage.h"
#include "platform/host/keep/keeper.h"
#include "platform/host/options/options.h"
#include "platform/host/record/trace.h"
#include "platform/host/screen/pixel_fit.h"
#include "platform/host/touch/desk.h"

namespace host {

/// The font and colour of the next text, and the fonts that the application holds open.
struct TextSetting {
    std::vector<std::unique_ptr<font_s>> open;
    /// Stands in while no font is set.
    std::unique_ptr<font_s> standard;
    /// Borrowed from `open`; null: the standard font.
    const font_s* font = nullptr;
    Rgb colour = kBlack;
};

/// The one object behind the border: owns every part of the platform, in the order in which they build on one
/// another.
class Toolkit {
public:
    explicit Toolkit(Options chosen);

    Options options;
    Clock clock;
    Storage storage;
    Trace trace;
    Theme theme;
    Languages languages;
    Text text;
    Screen screen;
    PixelFit pixelFit;
    std::unique_ptr<Display> display;
    Panel panel;
    Modals modals;
    Loop loop;
    Desk desk;
    TextSetting textSetting;
    Keeper keeper;
};

/// Opens those of the three standard streams that are closed, onto nothing. Otherwise whatever is opened next (a trace,
/// a picture, the display's connection) would take their place and receive messages.
void openStandardStreams();

/// Makes the process's toolkit from its options. One that cannot be met is one line on standard error and ends the
/// process with status 2.
void makeToolkit(Options options);

/// The process's toolkit, from makeToolkit to the end of the process.
Toolkit& toolkit();

/// Ends the process as a wrong option does: one line on standard error and status 2.
[[noreturn]] void refuse(const std::string& reason);

}  // namespace host
