#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/host/base/device.h"

namespace host {

/// A whole decimal number from `lowest` to `highest`; nothing for any other text.
[[nodiscard]] std::optional<long> wholeNumber(std::string_view text, long lowest, long highest);

/// The device that "WxH@DPI[,colour|,grey][,scale=S][,platform=N]" describes. Nothing, with the reason in `error`,
/// when it describes none.
[[nodiscard]] std::optional<Device> parsePanel(std::string_view text, std::string& error);

}  // namespace host
