#include "platform/host/base/device.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {
// Design units.
constexpr int kThinLineWidth = 4;
constexpr int kThickLineWidth = 6;
constexpr int kStandardRadius = 20;
}  // namespace

int Device::designToPixel(int units) const {
    constexpr double kDesignDpi = 300.0;
    constexpr double kLargest = 1e9;  // keeps any unit inside an int
    const double pixels = std::round(units * (dpi * scale / kDesignDpi));
    return static_cast<int>(std::clamp(pixels, 1.0, kLargest));
}

int Device::frameThickness(int code) const {
    if (code == kThinLine) return designToPixel(kThinLineWidth);
    if (code == kThickLine) return designToPixel(kThickLineWidth);
    return std::max(code, 0);
}

int Device::cornerRadius(int code) const {
    return code == kStandardCorner ? designToPixel(kStandardRadius) : std::max(code, 0);
}

}  // namespace host
