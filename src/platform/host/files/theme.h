#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "platform/bitmap.h"
#include "platform/host/base/device.h"
#include "platform/host/files/ini_file.h"
#include "platform/host/files/svg_icon.h"

namespace host {

/// Pictures and values of the device's look. Pictures are SVG files, rasterised for the panel's density at first
/// use and then shared. A name that ends in "_inv" and has no file is the inverted picture of the name without it.
/// theme.ini says how large the pictures are, which of them are transparent, and which are other names of others.
class Theme {
public:
    /// `directory` holds theme.ini and icons/; a missing one is told once on standard error.
    Theme(std::filesystem::path directory, const Device& device);

    /// One of the theme's folders, such as "languages"; the installed theme's where this one lacks it, since a theme of
    /// one's own may be just a few icons.
    [[nodiscard]] std::filesystem::path folder(const char* name) const;

    /// The picture of that name; null when there is none (and for an empty name). "broken_image" falls back to
    /// the record the program exports as `def_broken_image`.
    [[nodiscard]] std::shared_ptr<bitmap_s> picture(const std::string& name);

    /// A value of theme.ini, "section.key" for a key in a section; null when there is none. Lives as long as the theme.
    [[nodiscard]] const std::string* value(const std::string& name) const;
    /// The value as a whole number; `fallback` where there is none and, told on standard error, where it is not one.
    [[nodiscard]] int number(const std::string& name, int fallback) const;

private:
    [[nodiscard]] std::shared_ptr<bitmap_s> load(const std::string& name);
    [[nodiscard]] std::shared_ptr<bitmap_s> inverted(const std::string& name);
    [[nodiscard]] const std::string* iconValue(const std::string& section, const std::string& name) const;
    [[nodiscard]] IconLayout layoutOf(const std::string& name) const;

    std::filesystem::path directory_;
    const Device& device_;
    IniValues values_;
    std::map<std::string, std::shared_ptr<bitmap_s>> pictures_;
};

/// The installed theme: --theme, else $COLOUR_THEME, else beside the program, else where it was built from.
[[nodiscard]] std::filesystem::path findTheme(const std::string& chosen);

}  // namespace host
