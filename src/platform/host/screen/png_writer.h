#pragma once

#include <filesystem>
#include <string>

#include "platform/host/screen/framebuffer.h"

namespace host {

/// Writes the pixels as a PNG file. False, with one line that names file and reason in `error`, when that fails.
[[nodiscard]] bool writePng(const std::filesystem::path& file, const Framebuffer& pixels, std::string& error);

}  // namespace host
