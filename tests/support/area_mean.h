#pragma once

#include <algorithm>
#include <cmath>
#include <functional>

#include "platform/host/base/geometry.h"

/// What the pixel `at` of a picture scaled from one size to another should be: the mean of `value` (column, row) over
/// the area that the pixel covers, by the definition and slowly.
inline double areaMean(host::Size from, host::Size to, host::Point at, const std::function<int(int, int)>& value) {
    const double across = 1.0 * from.w / to.w, down = 1.0 * from.h / to.h;
    const auto covered = [](int cell, int index, double step) {
        return std::max(0.0, std::min((index + 1) * step, cell + 1.0) - std::max(index * step, 1.0 * cell));
    };
    double sum = 0;
    for (int row = static_cast<int>(at.y * down); row < std::min<double>(from.h, (at.y + 1) * down); ++row) {
        for (int column = static_cast<int>(at.x * across); column < std::min<double>(from.w, (at.x + 1) * across);
             ++column) {
            sum += covered(column, at.x, across) * covered(row, at.y, down) * value(column, row);
        }
    }
    return sum / (across * down);
}
