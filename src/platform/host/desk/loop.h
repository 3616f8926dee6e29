#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <optional>

#include "platform/callbacks.h"
#include "platform/host/base/clock.h"
#include "platform/host/desk/modals.h"
#include "platform/host/desk/signals.h"
#include "platform/host/desk/timers.h"
#include "platform/host/desk/tip.h"
#include "platform/host/panel/display.h"
#include "platform/host/panel/panel.h"
#include "platform/host/record/trace.h"

namespace host {

/// Plays a script beside the person: the loop calls `play` whenever `resumeAt` has come.
class Player {
public:
    virtual ~Player() = default;
    /// When it wants to go on; the clock's present time or earlier means at once.
    [[nodiscard]] virtual Instant resumeAt() const = 0;
    /// Goes on until it has to wait or has ended (it then stops the loop).
    virtual void play() = 0;
};

/// The one event loop: brings input, timers, script and panel steps into one order, numbers the events, and is
/// the only place from which the application is called. Owned by the Toolkit.
///
///     wait      the display waits for input until something is due
///     act       what is due at one instant: the panel's steps, the timers in order, a held key, the script
///     call      of each of these at most one call into the application: an event, a timer, the explorer's wish
///     settle    what that call has set off, one after the other until nothing is left: the explorer's wishes, event 23
///               to a new handler, the callbacks of modals that have closed
///
/// A signal that asks the program to end stops it with status 0, also one that came before run.
class Loop {
public:
    /// `wayBack` lies on the device's place for "back", the top left corner: every program has its way out there.
    Loop(Size screen, Point wayBack, Clock& clock, Display& display, Panel& panel, Modals& modals, Trace& trace);

    // What the application asks for.

    /// Installs the handler; it gets event 23 once the call in progress has returned.
    event_handler_t setHandler(event_handler_t handler);
    Timers& timers() { return timers_; }
    [[nodiscard]] const Clock& clock() const { return clock_; }
    /// The instant from which a timer set now counts: the present one, but on a virtual clock and inside a timer's
    /// callback the one at which that callback was due, even if it has waited for the panel since.
    [[nodiscard]] Instant timersCountFrom() const { return firing_.value_or(clock_.now()); }

    /// The application has drawn a piece of a stroke, which ends there; if it follows a press, wet ink goes on from it.
    void inked(Point end, Rgb colour, int width) { tip_.drawn(end, colour, width); }

    /// Installs the explorer's own handler, whose events are not traced. It gets event 23 when something first has to
    /// be seen; a picture that comes before spares it.
    void setHome(event_handler_t handler);
    /// True while the explorer's handler is the installed one.
    [[nodiscard]] bool atHome() const { return handler_ == home_; }

    // What comes from outside.

    /// A call into the application from the explorer, once the one in progress has returned.
    void enter(Callback callback);
    /// One toolkit event, exactly so: pointer events go to the open modal, all others to the handler.
    void event(int type, int par1, int par2);
    /// Carries out what calls into the application have set off.
    void settle();
    /// Lets the open modal do something, then closes it if it is done. False when none is open or `action` says that
    /// it makes no sense for this one.
    bool command(const std::function<bool(Modal&)>& action);
    /// What a person did: clamped to the screen and numbered (a pointer sample is 35 when 100 ms have passed since
    /// the last 35 of its press, else 31). A move or an up without a down, and a second down, are dropped.
    void input(const Input& input);

    /// Runs until stop; `player` may be null. When a person closes the display, a signal ends the program or the
    /// display goes away (told on standard error, status 1) while the application has the screen, it is first led back
    /// to the explorer, so that its picture is saved.
    int run(Player* player);
    /// Ends run, which returns `status`; of several calls the first counts.
    void stop(int status);
    [[nodiscard]] bool stopped() const { return stopped_ || interrupted_; }
    /// True when it was a person or a signal that ended it.
    [[nodiscard]] bool interrupted() const { return closed_ || interrupted_; }

private:
    class Visit;

    void pointer(Input::Kind kind, Point at);
    void deliver(int type, int par1, int par2);
    void call(const Callback& callback);
    /// False when nothing is left to settle.
    bool settleOne();
    void fireTimers(Instant now);
    void repeatPress(Instant now);
    void fire(const DueTimer& timer);
    /// What is due at this instant.
    void act(Player* player);
    void leadHome();
    [[nodiscard]] std::optional<Instant> nextInstant(const Player* player) const;
    void passTime(const Player* player);

    Size screen_;
    Point wayBack_;
    Clock& clock_;
    Display& display_;
    Panel& panel_;
    Modals& modals_;
    Trace& trace_;
    Timers timers_;
    event_handler_t handler_ = nullptr;
    event_handler_t home_ = nullptr;
    bool repaintDue_ = false;
    std::deque<Callback> entries_;
    bool visiting_ = false;  ///< the application is running
    std::optional<Instant> firing_;
    bool pressed_ = false;
    Instant lastReport_{};
    Tip tip_;
    std::optional<Instant> repeatAt_;  ///< when the press on a modal acts again
    bool stopped_ = false;
    bool closed_ = false;
    int status_ = 0;
    std::atomic<bool> interrupted_ = false;
    EndSignals signals_;  ///< last, so that nothing it touches goes before it
};

}  // namespace host
