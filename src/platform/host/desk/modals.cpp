#include "platform/host/desk/modals.h"

#include <algorithm>
#include <utility>

namespace host {

Modals::Modals(Screen& screen, Panel& panel, Display& display) : screen_(screen), panel_(panel), display_(display) {}

void Modals::open(std::unique_ptr<Modal> modal) {
    layers_.push_back({std::move(modal), nullptr});
    // While the others are off the screen, `lower` covers the new one together with them; covering it now would put
    // its picture into what lies under theirs.
    if (!lifted_) cover(layers_.back());
    updateTextInput();
}

Modal* Modals::top() const { return layers_.empty() ? nullptr : layers_.back().modal.get(); }

std::optional<Callback> Modals::takeClosed() {
    for (;;) {
        const auto layer =
            std::find_if(layers_.begin(), layers_.end(), [](const Layer& each) { return each.modal->closed(); });
        if (layer == layers_.end()) return std::nullopt;
        const Rect area = layer->modal->area();
        std::optional<Callback> callback = layer->modal->takeCallback();
        lift();
        layers_.erase(layer);
        lower();
        panel_.update(area, Waveform::Regular);
        updateTextInput();
        if (callback) return callback;
    }
}

void Modals::lift() {
    if (lifted_) return;
    lifted_ = true;
    for (auto layer = layers_.rbegin(); layer != layers_.rend(); ++layer) {
        const Rect area = layer->modal->area();
        if (layer->under) screen_.draw({area.x, area.y}, *layer->under);
        layer->under.reset();
    }
}

void Modals::lower() {
    if (!lifted_) return;
    lifted_ = false;
    for (Layer& layer : layers_) cover(layer);
}

void Modals::cover(Layer& layer) {
    const Rect area = layer.modal->area();
    layer.under = screen_.capture(area);
    layer.modal->paint();
    panel_.update(area, Waveform::Regular);
}

void Modals::updateTextInput() {
    const std::optional<Rect> place = layers_.empty() ? std::nullopt : layers_.back().modal->textPlace();
    display_.setTextInput(place.has_value(), place.value_or(Rect{}));
}

}  // namespace host
