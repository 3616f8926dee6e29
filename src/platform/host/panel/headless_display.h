#pragma once

#include <memory>

#include "platform/host/panel/display.h"

namespace host {

/// Shows nothing and gets no input; a wait ends when its time has passed or by wake.
[[nodiscard]] std::unique_ptr<Display> openHeadless();

}  // namespace host
