#pragma once

#include <fontconfig/fontconfig.h>

#include <string>

namespace host {

/// A few characters that show a family which has no letters for its own name, such as one for another script or
/// for symbols. Empty for a family that can show its name, and for an unknown one. Opens no font.
[[nodiscard]] std::string fontSample(FcConfig* config, const std::string& family);

}  // namespace host
