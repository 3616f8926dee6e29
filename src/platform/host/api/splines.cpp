#include "platform/splines.h"

#include "platform/host/screen/splines.h"
#include "platform/host/toolkit.h"

namespace lumora::graphics {

void CubicSplines::calculateXYSplines(std::span<const PointD> run, std::span<CubicSpline> x, std::span<CubicSpline> y) {
    host::toolkit().trace.call("calculateXYSplines", static_cast<int>(run.size()));
    host::calculateSplines(run, x, y);
}

void CubicSplines::drawXYSpline(const CubicSpline& x, const CubicSpline& y, int resolution, int colour, int width) {
    using host::TraceRounded;
    host::Toolkit& kit = host::toolkit();
    kit.trace.call("drawXYSpline", TraceRounded{x.a}, TraceRounded{y.a}, TraceRounded{host::endOf(x)},
                   TraceRounded{host::endOf(y)}, resolution, host::TraceColour{colour}, width);
    kit.screen.ink(x, y, resolution, colour, width);
}

}  // namespace lumora::graphics
