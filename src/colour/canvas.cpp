#include "colour/canvas.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "colour/blank_page.h"
#include "colour/codes.h"
#include "platform/device.h"

namespace {

using BitmapRecord = std::unique_ptr<bitmap_s, decltype(&std::free)>;

}  // namespace

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
    if (!path_.empty()) {
        // A picture that is missing or does not load leaves the page white.
        if (const BitmapRecord picture(LoadBitmap(path_.c_str()), &std::free); picture != nullptr) {
            DrawBitmap(rect_.x + (rect_.w - picture->width) / 2, rect_.y + (rect_.h - picture->height) / 2,
                       picture.get());
        }
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

void Canvas::Draw() {
    if (page_.isEmpty()) return;
    DrawBitmap(rect_.x, rect_.y, page_.GetBitmap());
    text_editor_.Draw();
}

void Canvas::Update() const { PartialUpdate(rect_.x, rect_.y, rect_.w, rect_.h); }

int Canvas::Handler(int type, int x, int y) {
    const bool sample =
        type == EventType::PointerUp || type == EventType::PointerMove || type == EventType::PointerReport;
    if (tool_ == Command::Text && sample && text_editor_.IsExtraActive()) {
        // A drag of the text frame that leaves the canvas goes on at its border.
        x = std::clamp(x, rect_.x, rect_.x + rect_.w - 1);
        y = std::clamp(y, rect_.y, rect_.y + rect_.h - 1);
    }
    if (!contains(x, y)) {
        if (!strokeEndsOutside(type)) return 0;
        // The finger lifts beyond the page: the stroke ends at the page's edge.
        return penHandler(type, std::clamp(x, rect_.x, rect_.x + rect_.w), std::clamp(y, rect_.y, rect_.y + rect_.h));
    }
    if (sample) return forward(type, x, y);
    if (type != EventType::PointerDown) return 0;
    keepalive_counter_ = 2 * keepalive_time_;
    if (keepalive_time_ != 0) SetHardTimer("KeepaliveTimer", keep_alive, kKeepAliveTick);
    return forward(type, x, y);
}

bool Canvas::contains(int x, int y) const {
    return x >= rect_.x && x < rect_.x + rect_.w && y >= rect_.y && y < rect_.y + rect_.h;
}

bool Canvas::strokeEndsOutside(int type) const {
    return drawing_ && type == EventType::PointerUp && (isPen(tool_) || tool_ == Command::Eraser);
}

int Canvas::forward(int type, int x, int y) {
    if (isPen(tool_) || tool_ == Command::Eraser) return penHandler(type, x, y);
    if (tool_ == Command::Text) return text_editor_.Handler(type, x, y);
    return 0;
}
