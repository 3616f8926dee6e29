#include "platform/splines.h"

#include <cmath>

#include "platform/host/screen/splines.h"
#include "platform/host/toolkit.h"

namespace lumora::graphics {

namespace {

host::TraceRounded startOf(const CubicSpline& piece) { return {piece.a}; }

host::TraceRounded endOf(const CubicSpline& piece) {
    const double t = piece.length;
    return {piece.a + t * (piece.b + t * (piece.c + t * piece.d))};
}

host::Point pixelAt(host::TraceRounded x, host::TraceRounded y) {
    return {static_cast<int>(std::lround(x.value)), static_cast<int>(std::lround(y.value))};
}

}  // namespace

void CubicSplines::calculateXYSplines(std::span<const PointD> run, std::span<CubicSpline> x, std::span<CubicSpline> y) {
    host::Toolkit& kit = host::toolkit();
    kit.trace.call("calculateXYSplines", static_cast<int>(run.size()));
    host::calculateSplines(kit.pixelFit.place(run), x, y);
}

void CubicSplines::drawXYSpline(const CubicSpline& x, const CubicSpline& y, int resolution, int colour, int width) {
    host::Toolkit& kit = host::toolkit();
    kit.trace.call("drawXYSpline", startOf(x), startOf(y), endOf(x), endOf(y), resolution, host::TraceColour{colour},
                   width);
    kit.screen.ink(x, y, resolution, colour, width);
    kit.loop.inked(pixelAt(endOf(x), endOf(y)), colour, width);
}

}  // namespace lumora::graphics
