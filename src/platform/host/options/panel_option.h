#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/host/base/device.h"

namespace host {

/// The device that "WxH@DPI[,colour|,grey][,scale=S][,platform=N]" describes, each property at most once. Nothing, with
/// the reason in `error`, when it describes none.
[[nodiscard]] std::optional<Device> parsePanel(std::string_view text, std::string& error);

}  // namespace host
