#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/host/panel/display.h"

namespace host {

/// Opens a window on the machine's own screen: the panel in its own size or, where the screen is smaller, scaled
/// to fit; resizable. Mouse, touch and pen draw. A missing icon is left out. Null where no screen answers; `error` then
/// tells why, in a few words. One window at a time, used by the thread that opened it.
[[nodiscard]] std::unique_ptr<Display> openWindow(Size panel, const std::string& title,
                                                  const std::filesystem::path& icon, std::string& error);

}  // namespace host
