#include "platform/host/options/panel_option.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <set>
#include <system_error>

#include "platform/host/options/whole_number.h"

namespace host {

namespace {

bool setScale(Device& device, std::string_view text) {
    constexpr double kSmallest = 0.25;
    constexpr double kLargest = 8.0;
    const char* const end = text.data() + text.size();
    const auto [stopped, code] = std::from_chars(text.data(), end, device.scale, std::chars_format::fixed);
    return code == std::errc{} && stopped == end && device.scale >= kSmallest && device.scale <= kLargest;
}

/// `seen` holds the names of the properties before this one, which may not come again.
bool setProperty(Device& device, std::string_view property, std::set<std::string_view>& seen) {
    const std::string_view name = property.substr(0, property.find('='));
    const std::string_view value = property.substr(std::min(name.size() + 1, property.size()));
    const bool isGrey = property == "grey";
    if (!seen.insert(isGrey ? "colour" : name).second) return false;
    if (isGrey || property == "colour") {
        device.colour = !isGrey;
        return true;
    }
    if (name == "scale") return setScale(device, value);
    const auto platform = wholeNumber(value, 0, std::numeric_limits<int>::max());
    device.platform = static_cast<int>(platform.value_or(0));
    return name == "platform" && platform.has_value();
}

}  // namespace

std::optional<Device> parsePanel(std::string_view text, std::string& error) {
    const auto take = [&text](char separator) {
        const std::string_view part = text.substr(0, text.find(separator));
        text.remove_prefix(std::min(part.size() + 1, text.size()));
        return part;
    };
    bool more = text.find(',') != std::string_view::npos;
    const auto width = wholeNumber(take('x'), 200, 10'000);
    const auto height = wholeNumber(take('@'), 200, 10'000);
    const auto dpi = wholeNumber(take(','), 50, 1'200);
    if (!width || !height || !dpi) {
        error = "a panel is WIDTHxHEIGHT@DPI, with sides from 200 to 10000 pixels and 50 to 1200 dots to the inch";
        return std::nullopt;
    }
    Device device{
        .width = static_cast<int>(*width), .height = static_cast<int>(*height), .dpi = static_cast<int>(*dpi)};
    std::set<std::string_view> seen;
    while (more) {
        more = text.find(',') != std::string_view::npos;
        const std::string_view property = take(',');
        if (setProperty(device, property, seen)) continue;
        error = "a panel has colour or grey, scale=S from 0.25 to 8 and platform=N, each once, but no '";
        error.append(property).append("'");
        return std::nullopt;
    }
    return device;
}

}  // namespace host
