#pragma once

#include "platform/host/base/device.h"
#include "platform/host/files/languages.h"
#include "platform/host/files/theme.h"
#include "platform/host/panel/panel.h"
#include "platform/host/screen/screen.h"
#include "platform/host/screen/text.h"

namespace host {

/// What the explorer and the modals paint with. Everything is borrowed from the Toolkit.
struct Desk {
    const Device& device;
    Screen& screen;
    Panel& panel;
    Text& text;
    Theme& theme;
    Languages& languages;
};

}  // namespace host
