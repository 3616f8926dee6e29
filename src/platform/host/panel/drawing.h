#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>

#include "platform/host/panel/display.h"

namespace host {

using SteadyTime = std::chrono::steady_clock::time_point;

/// What one of many pointers did.
struct PointerAct {
    enum class Action : std::uint8_t { Down, Move, Up };
    enum class Kind : std::uint8_t { Mouse, Finger, Pen };
    Action action = Action::Down;
    Kind kind = Kind::Mouse;
    std::uint64_t id = 0;  ///< tells it from others of the same client
};

/// Decides whose pointer draws, since the panel knows one: whoever came first. A pen takes over from a finger of its
/// own client, which is the palm of the hand that holds it; fingers of that client count again half a second after the
/// pen has been lifted.
class Drawing {
public:
    /// What the drawing pointer does is put into `inputs`.
    explicit Drawing(std::deque<Input>& inputs) : inputs_(inputs) {}

    /// What a client's pointer did, and where: at least one place on the panel, oldest first. False when its press is
    /// ignored because another client is drawing.
    bool pointer(int client, const PointerAct& act, std::span<const Point> path, SteadyTime now);

    /// A client has gone; a press of its own ends where it was last.
    void leave(int client);

    [[nodiscard]] bool drawnByAnother(int client) const { return press_ && press_->client != client; }

private:
    struct Press {
        int client;
        PointerAct::Kind kind;
        std::uint64_t id;
        Point at;
    };

    bool press(int client, const PointerAct& act, Point at, SteadyTime now);
    void release();
    void put(Input::Kind kind, Point at);

    std::deque<Input>& inputs_;
    std::optional<Press> press_;
    int penClient_ = 0;       ///< whose pen drew last
    SteadyTime penLifted_{};  ///< and when it went up
};

}  // namespace host
