#pragma once

namespace quillo {

/// Pixels on the present panel for a length in device-independent units, 160 to the inch at scale 1; the
/// fraction is cut off toward zero.
int dp(double length);

}  // namespace quillo
