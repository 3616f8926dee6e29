#include "platform/host/browser/drawing.h"

namespace host {

namespace {

using namespace std::chrono_literals;
using Action = PointerMessage::Action;
using Kind = PointerMessage::Kind;

/// A palm leaves the panel later than the pen, or comes down once more.
constexpr auto kPalmDelay = 500ms;

}  // namespace

bool Drawing::pointer(int client, const PointerMessage& message, SteadyTime now) {
    if (message.action == Action::Down) return press(client, message, now);
    if (!press_ || press_->client != client || press_->id != message.id) return true;
    if (message.action == Action::Move) {
        for (const Point& at : message.path) put(Input::Kind::PointerMove, at);
        return true;
    }
    press_->at = message.path.back();
    if (press_->kind == Kind::Pen) {
        penClient_ = client;
        penLifted_ = now;
    }
    release();
    return true;
}

bool Drawing::press(int client, const PointerMessage& message, SteadyTime now) {
    if (drawnByAnother(client)) return false;
    const bool palm = message.kind == Kind::Finger && penClient_ == client && now - penLifted_ < kPalmDelay;
    if (palm) return true;
    if (press_) {
        if (message.kind != Kind::Pen || press_->kind != Kind::Finger) return true;
        release();
    }
    press_ = Press{client, message.kind, message.id, {}};
    put(Input::Kind::PointerDown, message.path.back());
    return true;
}

void Drawing::leave(int client) {
    if (press_ && press_->client == client) release();
}

void Drawing::release() {
    put(Input::Kind::PointerUp, press_->at);
    press_.reset();
}

void Drawing::put(Input::Kind kind, Point at) {
    press_->at = at;
    Input input;
    input.kind = kind;
    input.at = at;
    inputs_.push_back(input);
}

}  // namespace host
