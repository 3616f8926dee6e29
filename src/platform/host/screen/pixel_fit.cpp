#include "platform/host/screen/pixel_fit.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace host {

namespace {

using lumora::graphics::PointD;

constexpr std::size_t kMostBefore = 5;
constexpr std::size_t kFewBefore = 2;
constexpr std::size_t kMostAfter = 2;  // all that the pen has visited when the piece before a point is drawn
constexpr std::size_t kMostDegree = 3;
constexpr std::size_t kMostPoints = kMostBefore + 1 + kMostAfter;

/// Polynomials of rising degree over the length of the chords, each as near to the points as can be (least squares).
/// The terms are orthogonal on the points, so one more changes nothing of those before it.
class Fit {
public:
    explicit Fit(std::span<const PointD> points) : count_(points.size()) {
        for (std::size_t i = 0; i < count_; ++i) {
            if (i > 0)
                along_[i] = along_[i - 1] + std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
            term_[i] = 1 / std::sqrt(static_cast<double>(count_));
            strays_[i] = points[i];
        }
        takeTerm();
    }

    /// Adds the term of the next degree. False when the points are too few or too close for one.
    bool rise() {
        std::array<double, kMostPoints> next{};
        for (std::size_t i = 0; i < count_; ++i) next[i] = along_[i] * term_[i];
        const double ofTerm = product(next, term_);
        const double ofLower = product(next, lower_);
        for (std::size_t i = 0; i < count_; ++i) next[i] -= ofTerm * term_[i] + ofLower * lower_[i];
        const double length = std::sqrt(product(next, next));
        if (length < kTooShort) return false;
        for (double& value : next) value /= length;
        lower_ = term_;
        term_ = next;
        takeTerm();
        return true;
    }

    /// From the fitted place to the point.
    [[nodiscard]] PointD stray(std::size_t i) const { return strays_[i]; }
    [[nodiscard]] bool passesThroughThePixels() const {
        return std::all_of(strays_.begin(), strays_.begin() + static_cast<std::ptrdiff_t>(count_), [](PointD stray) {
            return std::abs(stray.x) < kWithinPixel && std::abs(stray.y) < kWithinPixel;
        });
    }

private:
    static constexpr double kTooShort = 1e-3;
    using Values = std::array<double, kMostPoints>;

    [[nodiscard]] double product(const Values& a, const Values& b) const {
        double sum = 0;
        for (std::size_t i = 0; i < count_; ++i) sum += a[i] * b[i];
        return sum;
    }

    void takeTerm() {
        PointD amount{0, 0};
        for (std::size_t i = 0; i < count_; ++i) {
            amount.x += strays_[i].x * term_[i];
            amount.y += strays_[i].y * term_[i];
        }
        for (std::size_t i = 0; i < count_; ++i) {
            strays_[i].x -= amount.x * term_[i];
            strays_[i].y -= amount.y * term_[i];
        }
    }

    std::size_t count_;
    Values along_{};
    Values lower_{};
    Values term_{};
    std::array<PointD, kMostPoints> strays_{};
};

}  // namespace

bool isWholePixel(PointD point) { return point.x == std::round(point.x) && point.y == std::round(point.y); }

PointD withinPixel(std::span<const PointD> run, std::size_t index) {
    const PointD point = run[index];
    if (index == 0 || index + 1 == run.size()) return point;
    const std::size_t after = std::min(kMostAfter, run.size() - 1 - index);
    for (const std::size_t most : {kMostBefore, kFewBefore}) {
        const std::size_t before = std::min(most, index);
        const auto near = run.subspan(index - before, before + 1 + after);
        if (!std::all_of(near.begin(), near.end(), isWholePixel)) continue;
        Fit fit(near);
        // A straight line would be taken for the shallow arcs of a slow hand, here and there: that is what shows.
        if (!fit.rise()) continue;
        for (std::size_t degree = 2; degree <= kMostDegree && degree + 1 < near.size() && fit.rise(); ++degree) {
            if (!fit.passesThroughThePixels()) continue;
            return {point.x - fit.stray(before).x, point.y - fit.stray(before).y};
        }
    }
    return point;
}

std::span<const PointD> PixelFit::place(std::span<const PointD> run) {
    placed_.assign(run.begin(), run.end());
    for (std::size_t i = 0; i < run.size(); ++i)
        if (isWholePixel(run[i])) placed_[i] = withinPixel(run, i);
    return placed_;
}

}  // namespace host
