#pragma once

#include <filesystem>
#include <string>

#include "platform/host/touch/desk.h"
#include "support/recording_display.h"

inline host::Device defaultPanel() { return {}; }
inline host::Device smallGreyPanel() { return {.width = 600, .height = 800, .dpi = 167, .colour = false}; }

/// All that modals paint with, on a screen of its own.
struct TestDesk {
    explicit TestDesk(const host::Device& onDevice = defaultPanel(), const std::string& language = "en",
                      const std::filesystem::path& themeFolder = COLOUR_SOURCE_DIR "/theme")
        : device(onDevice),
          screen({device.width, device.height}, device.colour ? host::PixelFormat::Rgb24 : host::PixelFormat::Grey8),
          panel(screen.pixels(), display, clock),
          text(device),
          theme(themeFolder, device),
          languages(themeFolder / "languages", language) {}

    host::Device device;
    host::Clock clock{1700000000};
    host::Screen screen;
    RecordingDisplay display;
    host::Panel panel;
    host::Text text;
    host::Theme theme;
    host::Languages languages;
    host::Desk desk{device, screen, panel, text, theme, languages};
};
