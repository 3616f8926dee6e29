#include "platform/host/files/theme.h"

#include <dlfcn.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <iostream>
#include <string_view>
#include <system_error>

namespace host {

namespace {

constexpr std::string_view kInverse = "_inv";
constexpr const char* kBrokenImage = "broken_image";
/// The side of a toolbar button, in units of 1/160 inch.
constexpr double kButtonSide = 50.1;

/// Whole pixels for units of 1/160 inch, as the application computes them for its buttons.
int pixels(const Device& device, double units) {
    return static_cast<int>(std::clamp(device.scale * (device.dpi * units) / 160.0, 0.0, 65535.0));
}

/// A picture's size in units of 1/160 inch.
struct Units {
    double width;
    double height;
};

/// "SIDE" or "WIDTH x HEIGHT"; false, with `units` as they were, for anything else.
bool readUnits(const std::string& text, Units& units) {
    Units read{};
    char rest = 0;
    const bool square = std::sscanf(text.c_str(), "%lf %c", &read.width, &rest) == 1;
    if (!square && std::sscanf(text.c_str(), "%lf x %lf %c", &read.width, &read.height, &rest) != 2) return false;
    if (square) read.height = read.width;
    if (!(read.width > 0) || !(read.height > 0)) return false;
    units = read;
    return true;
}

/// `text` as a whole number; `fallback`, told on standard error, for anything else.
int readNumber(const std::string& what, const std::string& text, int fallback) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, code] = std::from_chars(text.data(), end, number);
    if (code == std::errc() && stopped == end) return number;
    std::cerr << "colour: theme.ini: " << what << " is not a whole number: " << text << "\n";
    return fallback;
}

/// Names are parts of file names and must not lead out of the folder.
bool isIconName(const std::string& name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
    });
}

void invert(bitmap_s& bitmap) {
    const std::size_t step = bitmap.depth == 32 ? 4 : 1;
    const std::size_t colours = bitmap.depth == 32 ? 3 : 1;  // alpha stays
    std::uint8_t* bytes = bitmap_pixels(&bitmap);
    for (std::size_t i = 0; i + colours <= pixelBytes(bitmap); i += step)
        for (std::size_t c = 0; c < colours; ++c) bytes[i + c] = static_cast<std::uint8_t>(~bytes[i + c]);
}

BitmapPtr copyOf(const bitmap_s& bitmap) {
    BitmapPtr copy = makeBitmap(bitmap.width, bitmap.height, bitmap.depth);
    if (copy != nullptr) std::memcpy(bitmap_pixels(copy.get()), bitmap_pixels(&bitmap), pixelBytes(*copy));
    return copy;
}

/// The picture that the application brings along for pictures that cannot be shown.
BitmapPtr defaultBrokenImage() {
    const auto* record = static_cast<const bitmap_s*>(dlsym(RTLD_DEFAULT, "def_broken_image"));
    return record == nullptr ? nullptr : copyOf(*record);
}

}  // namespace

Theme::Theme(std::filesystem::path directory, const Device& device)
    : directory_(std::move(directory)), device_(device) {
    std::optional<IniValues> values = readIniFile(directory_ / "theme.ini");
    if (values) {
        values_ = std::move(*values);
        return;
    }
    std::cerr << "colour: " << directory_.string() << ": no theme here: theme.ini cannot be read\n";
    directory_.clear();
}

std::shared_ptr<bitmap_s> Theme::picture(const std::string& name) {
    const auto known = pictures_.find(name);
    if (known != pictures_.end()) return known->second;
    // Noted before it is loaded, so that an alias which leads back to itself ends.
    pictures_[name] = nullptr;
    std::shared_ptr<bitmap_s> made = load(name);
    if (made == nullptr && name == kBrokenImage) made = defaultBrokenImage();
    return pictures_[name] = made;
}

std::shared_ptr<bitmap_s> Theme::load(const std::string& name) {
    if (!isIconName(name)) return nullptr;
    const std::string* alias = value("alias." + name);
    const std::string& source = alias != nullptr && isIconName(*alias) ? *alias : name;
    const std::filesystem::path file = directory_ / "icons" / (source + ".svg");
    std::error_code missing;
    const bool drawn = !directory_.empty() && std::filesystem::exists(file, missing);
    if (!drawn && source.ends_with(kInverse)) return inverted(source.substr(0, source.size() - kInverse.size()));
    if (directory_.empty()) return nullptr;
    std::string error;
    BitmapPtr picture = drawSvgIcon(file, layoutOf(source), error);
    if (picture == nullptr) std::cerr << "colour: " << error << "\n";
    return picture;
}

std::shared_ptr<bitmap_s> Theme::inverted(const std::string& name) {
    const std::shared_ptr<bitmap_s> normal = picture(name);
    if (normal == nullptr) return nullptr;
    BitmapPtr copy = copyOf(*normal);
    if (copy != nullptr) invert(*copy);
    return copy;
}

std::filesystem::path Theme::folder(const char* name) const {
    const std::filesystem::path own = directory_ / name;
    return !directory_.empty() && std::filesystem::exists(own) ? own : findTheme({}) / name;
}

const std::string* Theme::value(const std::string& name) const {
    const auto known = values_.find(name);
    return known == values_.end() ? nullptr : &known->second;
}

int Theme::number(const std::string& name, int fallback) const {
    const std::string* text = value(name);
    return text == nullptr ? fallback : readNumber(name, *text, fallback);
}

/// The value in that section for the icon, else for the family its name begins with ("key" for "key_shift"),
/// else the section's default; null when it has none.
const std::string* Theme::iconValue(const std::string& section, const std::string& name) const {
    std::string key = section + "." + name;
    while (key.size() > section.size()) {
        const std::string* found = value(key);
        if (found != nullptr) return found;
        const std::size_t cut = key.rfind('_');
        key.resize(cut == std::string::npos ? 0 : cut);
    }
    return value(section + ".default");
}

IconLayout Theme::layoutOf(const std::string& name) const {
    Units units{kButtonSide, kButtonSide};
    const std::string* size = iconValue("size", name);
    if (size != nullptr && !readUnits(*size, units)) {
        std::cerr << "colour: theme.ini: the size of " << name << " is neither SIDE nor WIDTH x HEIGHT: " << *size
                  << "\n";
    }
    const std::string* grid = iconValue("grid", name);
    const std::string* transparent = iconValue("transparent", name);
    IconLayout layout;
    layout.size = {pixels(device_, units.width), pixels(device_, units.height)};
    layout.grid = grid == nullptr ? 0 : readNumber("the grid of " + name, *grid, 0);
    layout.transparent = transparent != nullptr && *transparent == "yes";
    return layout;
}

std::filesystem::path findTheme(const std::string& chosen) {
    if (!chosen.empty()) return chosen;
    const char* fromEnvironment = std::getenv("COLOUR_THEME");
    if (fromEnvironment != nullptr && *fromEnvironment != '\0') return fromEnvironment;
    std::filesystem::path source = std::filesystem::path(COLOUR_SOURCE_DIR) / "theme";
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    if (error) return source;
    for (const auto& place : {program.parent_path() / "share" / "colour" / "theme", program / "theme"})
        if (std::filesystem::exists(place / "theme.ini", error)) return place;
    return source;
}

}  // namespace host
