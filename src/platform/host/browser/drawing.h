#pragma once

#include <chrono>
#include <deque>
#include <optional>

#include "platform/host/browser/messages.h"

namespace host {

using SteadyTime = std::chrono::steady_clock::time_point;

/// Decides whose pointer draws, since the panel knows one: whoever came first. A pen takes over from a finger of its
/// own client, which is the palm of the hand that holds it. Owned by the stage.
class Drawing {
public:
    /// What the drawing pointer does is put into `inputs`.
    explicit Drawing(std::deque<Input>& inputs) : inputs_(inputs) {}

    /// What a client's pointer did. False when its press is ignored because another client is drawing.
    bool pointer(int client, const PointerMessage& message, SteadyTime now);

    /// A client has gone; a press of its own ends where it was last.
    void leave(int client);

    [[nodiscard]] bool drawnByAnother(int client) const { return press_ && press_->client != client; }

private:
    struct Press {
        int client;
        PointerMessage::Kind kind;
        std::uint32_t id;
        Point at;
    };

    bool press(int client, const PointerMessage& message, SteadyTime now);
    void release();
    void put(Input::Kind kind, Point at);

    std::deque<Input>& inputs_;
    std::optional<Press> press_;
    int penClient_ = 0;       ///< whose pen drew last
    SteadyTime penLifted_{};  ///< and when it went up
};

}  // namespace host
