#include "colour/canvas.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>

#include "colour/codes.h"
#include "colour/toolbar.h"
#include "platform/device.h"

using lumora::graphics::CubicSpline;
using lumora::graphics::CubicSplines;
using lumora::graphics::PointD;

namespace {

using BitmapRecord = std::unique_ptr<bitmap_s, decltype(&std::free)>;

/// Bounds the memory at seven pages: these, the present page and the one to redo.
constexpr unsigned int kMostSteps = 5;
/// Milliseconds between two keep-alive ticks.
constexpr int kKeepAliveTick = 500;
/// Points on either side of a segment that shape its curve.
constexpr int kSplineReach = 5;

}  // namespace

int Canvas::keepalive_time_ = 0;
int Canvas::keepalive_counter_ = 0;

Canvas::Canvas() {
    constexpr int kKeepAliveSeconds = 60;
    text_editor_.SetCanvas(this);
    // With fast sleep the device may doze off between strokes.
    const bool fast_sleep = lumora::device::access("/mnt/ext1/fast_sleep", lumora::device::kFileExists) == 0;
    keepalive_time_ = fast_sleep ? 0 : kKeepAliveSeconds;
}

void Canvas::SetTool(int tool) {
    tool_ = tool;
    text_editor_.SetActive(tool == Command::Text);
}

void Canvas::SetPenColor(int color) {
    pen_color_ = color;
    text_editor_.SetFontColor(color);
}

void Canvas::LoadImage(const std::string& path, bool /*is_new*/) {
    dropHistory();
    FillAreaRect(&rect_, kWhite);
    path_ = path;
    // A picture that is missing or does not load leaves the page white.
    const BitmapRecord picture(path_.empty() ? nullptr : LoadBitmap(path_.c_str()), &std::free);
    if (picture != nullptr) {
        DrawBitmap(rect_.x + (rect_.w - picture->width) / 2, rect_.y + (rect_.h - picture->height) / 2, picture.get());
    }
    snapshot();
}

void Canvas::SaveImage() {
    const BitmapRecord picture(BitmapFromScreen(rect_.x, rect_.y, rect_.w, rect_.h), &std::free);
    if (picture == nullptr) return;
    if (isBlank(*picture)) {
        lumora::device::unlink(path_.c_str());
    } else {
        SaveBitmap(path_.c_str(), picture.get());
    }
}

bool Canvas::isBlank(const bitmap_s& bitmap) {
    constexpr std::uint8_t kWhiteByte = 0xFF;
    const std::size_t used = std::size_t{bitmap.width} * bitmap.depth / 8;
    const std::uint8_t* row = bitmap_pixels(&bitmap);
    for (int y = 0; y < bitmap.height; ++y, row += bitmap.scanline) {
        // No exit inside a row: the compiler turns this loop into wide registers.
        std::uint8_t common = kWhiteByte;
        for (std::size_t i = 0; i < used; ++i) common &= row[i];
        if (common != kWhiteByte) return false;
    }
    return true;
}

void Canvas::Draw() {
    if (page_.isEmpty()) return;
    DrawBitmap(rect_.x, rect_.y, page_.GetBitmap());
    text_editor_.Draw();
}

void Canvas::Update() const { PartialUpdate(rect_.x, rect_.y, rect_.w, rect_.h); }

int Canvas::Handler(int type, int x, int y) {
    const int right = rect_.x + rect_.w;
    const int bottom = rect_.y + rect_.h;
    const bool strokes = isPen(tool_) || tool_ == Command::Eraser;
    const bool sample =
        type == EventType::PointerUp || type == EventType::PointerMove || type == EventType::PointerReport;
    if (tool_ == Command::Text && sample && text_editor_.IsExtraActive()) {
        // A drag of the text frame that leaves the canvas goes on at its border.
        x = std::clamp(x, rect_.x, right - 1);
        y = std::clamp(y, rect_.y, bottom - 1);
    }
    if (x < rect_.x || x >= right || y < rect_.y || y >= bottom) {
        if (!strokes || !drawing_ || type != EventType::PointerUp) return 0;
        // The pen lifts beyond the page: the stroke ends where it was last seen on it, without a line to the edge.
        return penHandler(type, last_x_, last_y_);
    }
    if (type == EventType::PointerDown) {
        keepalive_counter_ = 2 * keepalive_time_;
        if (keepalive_time_ != 0) SetHardTimer("KeepaliveTimer", keep_alive, kKeepAliveTick);
    } else if (!sample) {
        return 0;
    }
    if (strokes) return penHandler(type, x, y);
    return tool_ == Command::Text ? text_editor_.Handler(type, x, y) : 0;
}

void Canvas::keep_alive() {
    if (keepalive_counter_-- >= 2) SetHardTimer("KeepaliveTimer", keep_alive, kKeepAliveTick);
}

int Canvas::penHandler(int type, int x, int y) {
    if (type == EventType::PointerDown) {
        startStroke(x, y);
        return 0;
    }
    points_.push_back({static_cast<double>(x), static_cast<double>(y)});
    if (!drawing_) return 0;
    trail(x, y, type == EventType::PointerUp);
    if (type == EventType::PointerMove) refreshMove();
    // A careful slow stroke consists of reports alone: each of them shows what it has drawn, also on a slow panel.
    if (type == EventType::PointerReport) paintChanges();
    if (type == EventType::PointerUp) finishStroke();
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

void Canvas::refreshMove() {
    constexpr int kSlowPanel = 16;
    if (_device_platform() == kSlowPanel && move_count_ == 0) {
        ++move_count_;
        return;
    }
    paintChanges();
    move_count_ = 0;
}

void Canvas::finishStroke() {
    // Black and white follows the pen; greys and colours come half a second after it has been lifted.
    constexpr int kSettleDelay = 500;  // milliseconds
    paintChanges();
    SaveToHistory();
    SetHardTimerEx("updateTimer", update_timer_callback, this, kSettleDelay);
    drawing_ = false;
}

void Canvas::update_timer_callback(void* canvas) { static_cast<const Canvas*>(canvas)->Update(); }

void Canvas::trail(int x, int y, bool final) {
    if (isPen(tool_)) {
        // Three points behind the pointer, so that two later points shape each piece; at the end all that is left.
        const int newest = static_cast<int>(points_.size()) - 1;
        for (int i = newest - 3; i < (final ? newest : newest - 2); ++i) drawSegment(i);
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

std::pair<CubicSpline, CubicSpline> Canvas::getSpline(int i, int k) const {
    k = std::clamp(k, 1, kSplineReach);
    const int first = std::max(i - k, 0);
    const int last = std::min(i + k, static_cast<int>(points_.size()) - 1);
    const auto count = static_cast<std::size_t>(last - first);
    const std::span<const PointD> run(points_.data() + first, count + 1);

    // On the stack: nothing is allocated while the pen moves.
    std::array<CubicSpline, 2 * std::size_t{kSplineReach}> x;
    std::array<CubicSpline, 2 * std::size_t{kSplineReach}> y;
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

void Canvas::SaveToHistory() {
    redo_top_ = SmartBitmap();
    history_.resize(history_pos_);
    history_.push_back(page_);
    if (history_.size() > kMostSteps) history_.pop_front();
    history_pos_ = static_cast<unsigned int>(history_.size());
    snapshot();
}

void Canvas::Undo() {
    text_editor_.Clear();
    if (history_pos_ == 0) return;
    if (history_pos_ == history_.size()) redo_top_ = page_;
    --history_pos_;
    showPage(history_[history_pos_]);
}

void Canvas::Redo() {
    if (history_pos_ + 1 < history_.size()) {
        ++history_pos_;
        showPage(history_[history_pos_]);
        return;
    }
    if (redo_top_.isEmpty()) return;
    showPage(redo_top_);
    redo_top_ = SmartBitmap();
    ++history_pos_;
}

void Canvas::showPage(const SmartBitmap& page) {
    page_ = page;
    DrawBitmap(rect_.x, rect_.y, page_.GetBitmap());
    Update();
}

void Canvas::snapshot() {
    SmartBitmap capture;
    capture.FromScreen(rect_.x, rect_.y, rect_.w, rect_.h);
    page_ = capture;
}

void Canvas::dropHistory() {
    history_.clear();
    history_pos_ = 0;
    redo_top_ = SmartBitmap();
    page_ = SmartBitmap();
}
