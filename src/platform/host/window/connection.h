#pragma once

#include <array>
#include <chrono>
#include <optional>

struct SDL_Window;

namespace host {

/// The window system's connection: sleeps until something comes over it, and notices that its other end has gone,
/// after which no call of SDL's comes back in good order. Owned by the window's display; one at a time.
class Connection {
public:
    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Begins with the connection of that window. Screens without one, such as a console, are never lost.
    void watch(SDL_Window* window);

    /// False on such screens and before watch: what comes then must be asked for from time to time.
    [[nodiscard]] bool known() const { return socket_ >= 0; }
    [[nodiscard]] bool lost() const;

    /// Waits until there may be something to read or the connection is lost, at most `timeout` (nothing: without end).
    /// True when it has been woken, now or before.
    bool wait(std::optional<std::chrono::milliseconds> timeout) const;
    /// Ends the wait in progress, or the next one. Safe to call from another thread.
    void wake() const;

private:
    int socket_ = -1;  ///< borrowed from the window system's library
    int wakeEvent_ = -1;
    void* screen_ = nullptr;  ///< X's record of the connection, while its handlers are ours
};

}  // namespace host
