#pragma once

#include <algorithm>

namespace host {

/// Columns `left` .. `right` of a row; none while `left` is the larger one.
struct Columns {
    int left = 0;
    int right = -1;

    [[nodiscard]] bool empty() const { return left > right; }
    [[nodiscard]] Columns within(Columns other) const {
        return {std::max(left, other.left), std::min(right, other.right)};
    }
    [[nodiscard]] Columns united(Columns other) const {
        return {std::min(left, other.left), std::max(right, other.right)};
    }
};

/// The columns of a screen `width` pixels wide whose middles lie between two places of any value.
[[nodiscard]] inline Columns columnsBetween(double left, double right, int width) {
    const double first = std::min(std::max(left, 0.0), static_cast<double>(width));
    const double beyond = std::min(std::max(right + 1, 0.0), static_cast<double>(width));
    const auto whole = static_cast<int>(first);
    return {whole < first ? whole + 1 : whole, static_cast<int>(beyond) - 1};
}

}  // namespace host
