#include "platform/host/toolkit.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include "platform/host/browser/browser_display.h"
#include "platform/host/panel/headless_display.h"
#include "platform/host/window/window_display.h"

namespace host {

namespace {

std::unique_ptr<Toolkit> instance;

PixelFormat formatOf(const Device& device) { return device.colour ? PixelFormat::Rgb24 : PixelFormat::Grey8; }

std::unique_ptr<Display> openBrowserDisplay(const Options& options, const Theme& theme) {
    const BrowserSettings settings{options.port, options.listen, options.passwordFile, options.hostNames,
                                   theme.folder("browser")};
    std::string error;
    auto display = openBrowser(settings, options.device.bounds().size(), formatOf(options.device), error);
    if (display == nullptr) refuse(error);
    return display;
}

bool displayIsNamed() {
    constexpr std::array kNames = {"DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"};
    return std::any_of(kNames.begin(), kNames.end(), [](const char* name) { return std::getenv(name) != nullptr; });
}

std::unique_ptr<Display> openDisplay(const Options& options, const Theme& theme, Text& text) {
    if (options.display == DisplayKind::Headless) return openHeadless();
    // Most of the time that a display takes to open it waits for others.
    text.warmUp();
    if (options.display == DisplayKind::Browser) return openBrowserDisplay(options, theme);
    // Where none is named nothing is tried: the libraries would print lines of their own about it.
    const bool tried = options.display == DisplayKind::Window || displayIsNamed();
    std::string error = "there is no display here";
    const std::filesystem::path icon = theme.folder("browser") / "icon.svg";
    auto window = tried ? openWindow(options.device.bounds().size(), "Colour", icon, error) : nullptr;
    if (window != nullptr) return window;
    if (options.display == DisplayKind::Window)
        refuse("no window can be opened: " + error + " (try --display browser)");
    std::fprintf(stderr, "colour: %s; showing the panel in the browser instead\n", error.c_str());
    return openBrowserDisplay(options, theme);
}

Point wayBack(const Device& device) {
    constexpr int kFromTheCorner = 52;  // design units: in the middle of a button
    return {device.designToPixel(kFromTheCorner), device.designToPixel(kFromTheCorner)};
}

Clock clockFor(const Options& options) {
    return options.display == DisplayKind::Headless ? Clock(options.clock) : Clock();
}

}  // namespace

Toolkit::Toolkit(Options chosen)
    : options(std::move(chosen)),
      clock(clockFor(options)),
      storage(options.storage),
      theme(findTheme(options.theme), options.device),
      languages(theme.folder("languages"), options.language),
      text(options.device),
      screen(options.device.bounds().size(), formatOf(options.device)),
      display(openDisplay(options, theme, text)),
      panel(screen.pixels(), *display, clock, options.waveforms, &screen.damage()),
      modals(screen, panel, *display),
      loop(options.device.bounds().size(), wayBack(options.device), clock, *display, panel, modals, trace),
      desk{options.device, screen, panel, text, theme, languages},
      keeper(storage, languages, text, screen) {}

void openStandardStreams() {
    int opened = 0;
    while (opened >= 0 && opened <= STDERR_FILENO) opened = open("/dev/null", O_RDWR);
    if (opened >= 0) close(opened);
}

void makeToolkit(Options options) {
    instance = std::make_unique<Toolkit>(std::move(options));
    if (instance->options.trace.empty()) return;
    const bool fastSleep = instance->storage.access("/mnt/ext1/fast_sleep", F_OK) == 0;
    std::string error;
    if (!instance->trace.open(instance->options.trace, instance->options.device, fastSleep, error)) refuse(error);
}

Toolkit& toolkit() { return *instance; }

void refuse(const std::string& reason) {
    std::fprintf(stderr, "colour: %s\n", reason.c_str());
    std::exit(2);
}

}  // namespace host
