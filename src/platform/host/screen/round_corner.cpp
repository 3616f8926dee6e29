#include "platform/host/screen/round_corner.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr int kSlices = 16;  // columns into which a pixel on the rim is cut; exact to a quarter of a level

double sliceInDisc(double x, double top, double bottom, double radius) {
    const double half = std::sqrt(std::max(radius * radius - x * x, 0.0));
    return std::max(std::min(half, bottom) - std::max(-half, top), 0.0);
}

/// Area that the pixel whose top-left corner lies at (x, y) shares with a disc around the origin.
double areaInDisc(double x, double y, double radius) {
    const double farX = std::max(std::abs(x), std::abs(x + 1));
    const double farY = std::max(std::abs(y), std::abs(y + 1));
    if (farX * farX + farY * farY <= radius * radius) return 1;
    const double nearX = std::max({x, -x - 1, 0.0});
    const double nearY = std::max({y, -y - 1, 0.0});
    if (nearX * nearX + nearY * nearY >= radius * radius) return 0;
    double sum = 0;
    for (int slice = 0; slice < kSlices; ++slice) {
        sum += sliceInDisc(x + (slice + 0.5) / kSlices, y, y + 1, radius);
    }
    return sum / kSlices;
}

}  // namespace

int RoundCorner::coverage(int column, int row) const {
    const double x = outer_ - std::max(column, row) - 1;
    const double y = outer_ - std::min(column, row) - 1;
    const double area = areaInDisc(x, y, outer_) - (inner_ > 0 ? areaInDisc(x, y, inner_) : 0);
    return static_cast<int>(std::lround(area * 255));
}

}  // namespace host
