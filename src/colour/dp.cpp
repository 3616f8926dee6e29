#include "colour/dp.h"

#include "platform/device.h"

namespace quillo {

int dp(double length) {
    constexpr double kUnitsPerInch = 160.0;
    const double dots = get_screen_dpi() * length;
    return static_cast<int>(get_screen_scale_factor() * dots / kUnitsPerInch);
}

}  // namespace quillo
