#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "platform/bitmap.h"
#include "platform/host/device.h"

namespace host {

/// Pictures and values of the device's look. Pictures are SVG files, rasterised for the panel's density at first
/// use and then shared. A name that ends in "_inv" and has no file is the inverted picture of the name without it.
class Theme {
public:
    /// `directory` holds theme.ini and icons/; a missing one is told once on standard error.
    Theme(std::filesystem::path directory, const Device& device);

    [[nodiscard]] const std::filesystem::path& directory() const { return directory_; }

    /// The picture of that name; null when there is none (and for an empty name). "broken_image" falls back to
    /// the record the program exports as `def_broken_image`.
    [[nodiscard]] std::shared_ptr<bitmap_s> picture(const std::string& name);

    /// A value of theme.ini; null when there is none. The string lives as long as the theme.
    [[nodiscard]] const std::string* value(const std::string& name) const;

private:
    std::filesystem::path directory_;
    const Device& device_;
    std::map<std::string, std::string> values_;
    std::map<std::string, std::shared_ptr<bitmap_s>> pictures_;
};

/// The installed theme: --theme, else $COLOUR_THEME, else beside the program, else where it was built from.
[[nodiscard]] std::filesystem::path findTheme(const std::string& chosen);

}  // namespace host
