#pragma once

#include <memory>

#include "platform/host/desk/clock.h"
#include "platform/host/desk/desk.h"
#include "platform/host/desk/loop.h"
#include "platform/host/desk/modals.h"
#include "platform/host/explorer/explorer.h"
#include "platform/host/files/storage.h"
#include "platform/host/session/options.h"
#include "platform/host/session/trace.h"

namespace host {

/// The one object behind the border: owns every part of the platform, in the order in which they build on one
/// another.
class Toolkit {
public:
    explicit Toolkit(Options options);

    Options options;
    Clock clock;
    Storage storage;
    Trace trace;
    Theme theme;
    Languages languages;
    Text text;
    Screen screen;
    std::unique_ptr<Display> display;
    Panel panel;
    Modals modals;
    Loop loop;
    Desk desk;
};

/// The process's toolkit. It exists from the explorer's construction on.
Toolkit& toolkit();

/// Makes the process's toolkit; an option that cannot be met is one line on standard error and ends the process
/// with status 2.
Toolkit& makeToolkit(Options options);

}  // namespace host
