#include "colour/canvas.h"

namespace {

/// Bounds the memory at seven pages: these, the present page and the one to redo.
constexpr unsigned int kMostSteps = 5;

}  // namespace

void Canvas::SaveToHistory() {
    redo_top_ = SmartBitmap();
    while (history_pos_ < history_.size()) history_.pop_back();
    ++history_pos_;
    while (history_pos_ > kMostSteps) {
        history_.pop_front();
        --history_pos_;
    }
    history_.push_back(page_);
    snapshot();
}

void Canvas::Undo() {
    text_editor_.Clear();
    if (history_pos_ == 0) return;
    if (history_pos_ == history_.size()) redo_top_ = page_;
    --history_pos_;
    page_ = history_[history_pos_];
    showPage();
}

void Canvas::Redo() {
    if (history_pos_ + 1 < history_.size()) {
        ++history_pos_;
        page_ = history_[history_pos_];
        showPage();
        return;
    }
    if (redo_top_.isEmpty()) return;
    page_ = redo_top_;
    showPage();
    redo_top_ = SmartBitmap();
    ++history_pos_;
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

void Canvas::showPage() {
    DrawBitmap(rect_.x, rect_.y, page_.GetBitmap());
    Update();
}
