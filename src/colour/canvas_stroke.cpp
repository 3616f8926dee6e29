#include <algorithm>
#include <array>
#include <span>

#include "colour/canvas.h"
#include "colour/codes.h"
#include "colour/toolbar.h"
#include "platform/device.h"

using lumora::graphics::CubicSpline;
using lumora::graphics::CubicSplines;
using lumora::graphics::PointD;

namespace {

/// Points on either side of a segment that shape its curve.
constexpr int kSplineReach = 5;

}  // namespace

int Canvas::keepalive_time_ = 0;
int Canvas::keepalive_counter_ = 0;

int Canvas::penHandler(int type, int x, int y) {
    if (type == EventType::PointerDown) {
        startStroke(x, y);
        return 0;
    }
    points_.push_back({static_cast<double>(x), static_cast<double>(y)});
    if (!drawing_) return 0;
    trail(x, y, type == EventType::PointerUp);
    if (type == EventType::PointerUp) {
        finishStroke();
        return 0;
    }
    // A report draws its piece, so that no piece of a stroke is ever missing; the next move refreshes it.
    if (type != EventType::PointerMove) return 0;
    constexpr int kSlowPanel = 16;
    if (_device_platform() == kSlowPanel && move_count_ < 1) {
        ++move_count_;
        return 0;
    }
    paintChanges();
    move_count_ = 0;
    return 0;
}

void Canvas::startStroke(int x, int y) {
    ClearTimerEx(update_timer_callback, this);
    points_.clear();
    points_.push_back({static_cast<double>(x), static_cast<double>(y)});
    drawing_ = true;
    last_x_ = x;
    last_y_ = y;
    dirty_left_ = x;
    dirty_top_ = y;
    dirty_right_ = x + 1;
    dirty_bottom_ = y;
    paintChanges();
}

void Canvas::finishStroke() {
    // Black and white follows the pen; greys and colours come half a second after it has been lifted.
    constexpr int kSettleDelay = 500;  // milliseconds
    paintChanges();
    SaveToHistory();
    SetHardTimerEx("updateTimer", update_timer_callback, this, kSettleDelay);
    drawing_ = false;
}

void Canvas::trail(int x, int y, bool final) {
    if (isPen(tool_)) {
        // Three points behind the pointer, so that two later points shape each piece.
        const int points = static_cast<int>(points_.size());
        drawSegment(points - 4);
        if (final) {
            drawSegment(points - 3);
            drawSegment(points - 2);
        }
    } else if (tool_ == Command::Eraser) {
        erase(x, y);
    }
    last_x_ = x;
    last_y_ = y;
}

void Canvas::erase(int x, int y) {
    constexpr int kReach = 30;  // half the square's side, in pixels
    FillArea(x - kReach, y - kReach, 2 * kReach, 2 * kReach, kWhite);
    // The square may reach over the band above the page.
    if (toolbar_ != nullptr) toolbar_->Draw();
    extendDirty(x - kReach, y - kReach, x + kReach, y + kReach);
}

void Canvas::drawSegment(int i) {
    constexpr int kResolution = 100;
    constexpr double kMargin = 5.0;  // pixels around the piece's end points

    if (i < 0 || i + 1 >= static_cast<int>(points_.size())) return;
    const auto [x, y] = getSpline(i, kSplineReach);
    CubicSplines::drawXYSpline(x, y, kResolution, pen_color_, pen_thickness_);

    const PointD& from = points_[static_cast<std::size_t>(i)];
    const PointD& to = points_[static_cast<std::size_t>(i) + 1];
    extendDirty(static_cast<int>(std::min(from.x, to.x) - kMargin), static_cast<int>(std::min(from.y, to.y) - kMargin),
                static_cast<int>(std::max(from.x, to.x) + kMargin), static_cast<int>(std::max(from.y, to.y) + kMargin));
}

Canvas::SplinePair Canvas::getSpline(int i, int k) const {
    constexpr std::size_t kMostPieces = 2 * std::size_t{kSplineReach};
    const int first = std::max(i - k, 0);
    const int last = std::min(i + k, static_cast<int>(points_.size()) - 1);
    const auto count = static_cast<std::size_t>(last - first);
    const std::span<const PointD> run(points_.data() + first, count + 1);

    // On the stack: nothing is allocated while the pen moves.
    std::array<CubicSpline, kMostPieces> x;
    std::array<CubicSpline, kMostPieces> y;
    CubicSplines::calculateXYSplines(run, std::span(x).first(count), std::span(y).first(count));
    const auto piece = static_cast<std::size_t>(i - first);
    return {x[piece], y[piece]};
}

void Canvas::extendDirty(int left, int top, int right, int bottom) {
    dirty_left_ = std::min(dirty_left_, left);
    dirty_top_ = std::min(dirty_top_, top);
    dirty_right_ = std::max(dirty_right_, right);
    dirty_bottom_ = std::max(dirty_bottom_, bottom);
}

void Canvas::paintChanges() {
    // The panel controller refreshes whole groups of four pixels.
    constexpr int kGroup = 3;

    if (dirty_right_ > dirty_left_ || dirty_bottom_ > dirty_top_) {
        dirty_left_ &= ~kGroup;
        dirty_top_ &= ~kGroup;
        dirty_right_ = std::min(dirty_right_ | kGroup, rect_.x + rect_.w - 1);
        dirty_bottom_ = std::min(dirty_bottom_ | kGroup, rect_.y + rect_.h - 1);
        DynamicUpdateBW(dirty_left_, dirty_top_, dirty_right_ - dirty_left_ + 1, dirty_bottom_ - dirty_top_ + 1);
    }
    dirty_left_ = dirty_right_ = last_x_;
    dirty_top_ = dirty_bottom_ = last_y_;
}

void Canvas::update_timer_callback(void* canvas) { static_cast<const Canvas*>(canvas)->Update(); }

void Canvas::keep_alive() {
    if (keepalive_counter_-- >= 2) SetHardTimer("KeepaliveTimer", keep_alive, kKeepAliveTick);
}
