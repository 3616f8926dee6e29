#include "platform/host/device.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {
constexpr int kThinLine = 4;         // design units
constexpr int kThickLine = 6;        // design units
constexpr int kStandardCorner = 20;  // design units
}  // namespace

int Device::designToPixel(int units) const {
    constexpr double kDesignDpi = 300.0;
    constexpr double kLargest = 1e9;  // keeps any unit inside an int
    const double pixels = std::round(units * (dpi * scale / kDesignDpi));
    return static_cast<int>(std::clamp(pixels, 1.0, kLargest));
}

int Device::frameThickness(int code) const {
    if (code == -2) return designToPixel(kThinLine);
    if (code == -3) return designToPixel(kThickLine);
    return std::max(code, 0);
}

int Device::cornerRadius(int code) const { return code == -100 ? designToPixel(kStandardCorner) : std::max(code, 0); }

}  // namespace host
