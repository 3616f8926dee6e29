#include "platform/host/panel/drawing.h"

namespace host {

namespace {

using namespace std::chrono_literals;
using Action = PointerAct::Action;
using Kind = PointerAct::Kind;

/// A palm leaves the panel later than the pen, or comes down once more.
constexpr auto kPalmDelay = 500ms;

}  // namespace

bool Drawing::pointer(int client, const PointerAct& act, std::span<const Point> path, SteadyTime now) {
    if (act.action == Action::Down) return press(client, act, path.back(), now);
    if (!press_ || press_->client != client || press_->id != act.id) return true;
    if (act.action == Action::Move) {
        for (const Point& at : path) put(Input::Kind::PointerMove, at);
        return true;
    }
    press_->at = path.back();
    if (press_->kind == Kind::Pen) {
        penClient_ = client;
        penLifted_ = now;
    }
    release();
    return true;
}

bool Drawing::press(int client, const PointerAct& act, Point at, SteadyTime now) {
    if (drawnByAnother(client)) return false;
    const bool palm = act.kind == Kind::Finger && penClient_ == client && now - penLifted_ < kPalmDelay;
    if (palm) return true;
    if (press_) {
        if (act.kind != Kind::Pen || press_->kind != Kind::Finger) return true;
        release();
    }
    press_ = Press{client, act.kind, act.id, {}};
    put(Input::Kind::PointerDown, at);
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
