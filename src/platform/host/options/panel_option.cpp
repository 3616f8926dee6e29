#include "platform/host/options/panel_option.h"

#include <charconv>
#include <cstddef>
#include <limits>
#include <system_error>

namespace host {

namespace {

constexpr long kSmallestSide = 200;
constexpr long kLargestSide = 10'000;
constexpr long kLowestDpi = 50;
constexpr long kHighestDpi = 1'200;
constexpr double kSmallestScale = 0.25;
constexpr double kLargestScale = 8.0;

/// Cuts off what stands before the next `separator`, and the separator with it.
std::string_view takeUntil(std::string_view& text, char separator) {
    const std::size_t length = std::min(text.find(separator), text.size());
    const std::string_view part = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return part;
}

std::optional<double> scaleFactor(std::string_view text) {
    double factor = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, code] = std::from_chars(text.data(), end, factor, std::chars_format::fixed);
    if (code != std::errc{} || stopped != end) return std::nullopt;
    if (!(factor >= kSmallestScale && factor <= kLargestScale)) return std::nullopt;
    return factor;
}

bool parseSize(std::string_view text, Device& device, std::string& error) {
    const auto width = wholeNumber(takeUntil(text, 'x'), kSmallestSide, kLargestSide);
    const auto height = wholeNumber(takeUntil(text, '@'), kSmallestSide, kLargestSide);
    const auto dpi = wholeNumber(text, kLowestDpi, kHighestDpi);
    if (!width || !height) error = "a panel is WIDTHxHEIGHT@DPI, with sides from 200 to 10000 pixels";
    if (width && height && !dpi) error = "a panel has from 50 to 1200 dots to the inch, as in 1404x1872@300";
    if (!error.empty()) return false;
    device.width = static_cast<int>(*width);
    device.height = static_cast<int>(*height);
    device.dpi = static_cast<int>(*dpi);
    return true;
}

bool parseProperty(std::string_view property, Device& device, std::string& error) {
    if (property == "colour" || property == "grey") {
        device.colour = property == "colour";
        return true;
    }
    std::string_view value = property;
    const std::string_view name = takeUntil(value, '=');
    if (name == "scale") {
        const std::optional<double> factor = scaleFactor(value);
        if (!factor) error = "a panel's scale is a number from 0.25 to 8";
        device.scale = factor.value_or(device.scale);
        return factor.has_value();
    }
    if (name == "platform") {
        const auto number = wholeNumber(value, 0, std::numeric_limits<int>::max());
        if (!number) error = "a panel's platform is a whole number";
        device.platform = static_cast<int>(number.value_or(device.platform));
        return number.has_value();
    }
    error = "a panel has colour or grey, scale=S and platform=N, but no '" + std::string(property) + "'";
    return false;
}

}  // namespace

std::optional<long> wholeNumber(std::string_view text, long lowest, long highest) {
    long number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, code] = std::from_chars(text.data(), end, number);
    if (code != std::errc{} || stopped != end || number < lowest || number > highest) return std::nullopt;
    return number;
}

std::optional<Device> parsePanel(std::string_view text, std::string& error) {
    error.clear();
    Device device;
    bool more = text.find(',') != std::string_view::npos;
    if (!parseSize(takeUntil(text, ','), device, error)) return std::nullopt;
    while (more) {
        more = text.find(',') != std::string_view::npos;
        if (!parseProperty(takeUntil(text, ','), device, error)) return std::nullopt;
    }
    return device;
}

}  // namespace host
