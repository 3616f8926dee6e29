#include "platform/host/screen/press_path.h"

#include <algorithm>

#include "platform/host/screen/pixel_fit.h"

namespace host {

namespace {

using lumora::graphics::PointD;

constexpr std::size_t kRoom = 4096;  // a long press; nothing is allocated while the pen moves

/// `at`, or as near to it as the pixel allows.
double inPixel(double at, int pixel) { return std::clamp(at, pixel - kWithinPixel, pixel + kWithinPixel); }

}  // namespace

PressPath::PressPath() {
    samples_.reserve(kRoom);
    placed_.reserve(kRoom);
}

std::span<const PointD> PressPath::place(std::span<const PointD> run) {
    placed_.assign(run.begin(), run.end());
    // The application may have left out samples, or have added points of its own; it keeps their order.
    auto newest = samples_.rbegin();
    for (std::size_t i = run.size(); i-- > 0;) {
        if (!isWholePixel(run[i])) continue;
        const auto is = [&](const Sample& sample) {
            return sample.delivered.x == run[i].x && sample.delivered.y == run[i].y;
        };
        const auto found = std::find_if(newest, samples_.rend(), is);
        if (found == samples_.rend()) {
            placed_[i] = withinPixel(run, i);
            continue;
        }
        placed_[i] = {inPixel(found->at.x, found->delivered.x), inPixel(found->at.y, found->delivered.y)};
        newest = found + 1;
    }
    return placed_;
}

}  // namespace host
