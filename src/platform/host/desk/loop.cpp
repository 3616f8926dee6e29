#include "platform/host/desk/loop.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "platform/host/record/json.h"
#include "platform/host/touch/pointer_event.h"

namespace host {

namespace {

constexpr int kRepaint = 23;
constexpr int kLostDisplay = 1;  // exit status

/// At this pace a press reports where the pointer is; the application spares the panel by it.
constexpr Instant kReportInterval{100};
/// What people know from keyboards, at a pace that the panel follows.
constexpr Instant kRepeatDelay{500};
constexpr Instant kRepeatInterval{150};

bool isPointer(int type) {
    return type == kPointerUp || type == kPointerDown || type == kPointerMove || type == kPointerReport;
}

}  // namespace

/// One call into the application. Open modals are off the screen meanwhile, so that it draws below them; what it sets
/// off (a new handler's repaint, a modal, another call) waits until it has returned.
class Loop::Visit {
public:
    explicit Visit(Loop& loop) : loop_(loop) {
        loop_.visiting_ = true;
        if (loop_.modals_.top() != nullptr) loop_.modals_.lift();
    }
    ~Visit() {
        loop_.modals_.lower();
        loop_.visiting_ = false;
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

private:
    Loop& loop_;
};

Loop::Loop(Size screen, Point wayBack, Clock& clock, Display& display, Panel& panel, Modals& modals, Trace& trace)
    : screen_(screen),
      wayBack_(wayBack),
      clock_(clock),
      display_(display),
      panel_(panel),
      modals_(modals),
      trace_(trace),
      signals_([this] {
          interrupted_ = true;
          display_.wake();
      }) {}

event_handler_t Loop::setHandler(event_handler_t handler) {
    repaintDue_ = true;
    return std::exchange(handler_, handler);
}

void Loop::setHome(event_handler_t handler) {
    home_ = handler;
    setHandler(handler);
}

void Loop::enter(Callback callback) {
    entries_.push_back(std::move(callback));
    settle();
}

void Loop::event(int type, int par1, int par2) {
    settle();
    Modal* const modal = modals_.top();
    if (modal != nullptr && isPointer(type)) {
        modal->pointer(type, {par1, par2});
        if (!modal->repeats()) {
            repeatAt_.reset();
        } else if (type == kPointerDown) {
            repeatAt_ = clock_.now() + kRepeatDelay;
        }
        settle();
        return;
    }
    deliver(type, par1, par2);
    settle();
}

bool Loop::command(const std::function<bool(Modal&)>& action) {
    Modal* const modal = modals_.top();
    if (modal == nullptr || !action(*modal)) return false;
    settle();
    return true;
}

void Loop::input(const Input& input) {
    switch (input.kind) {
        case Input::Kind::PointerDown:
        case Input::Kind::PointerMove:
        case Input::Kind::PointerUp:
            pointer(input.kind, input.at);
            return;
        case Input::Kind::Key:
            command([&](Modal& modal) { return modal.key(input.key), true; });
            return;
        case Input::Kind::Text:
            command([&](Modal& modal) { return modal.text(input.text), true; });
            return;
        case Input::Kind::Close:
            closed_ = true;
            stop(0);
            return;
        case Input::Kind::Lost:
            std::fputs("colour: the display has gone\n", stderr);
            closed_ = true;
            stop(kLostDisplay);
            return;
    }
}

void Loop::pointer(Input::Kind kind, Point at) {
    const bool down = kind == Input::Kind::PointerDown;
    if (down == pressed_) return;
    int type = kPointerMove;
    if (kind == Input::Kind::PointerUp) type = kPointerUp;
    if (down) type = kPointerDown;
    if (kind == Input::Kind::PointerMove && clock_.now() - lastReport_ >= kReportInterval) type = kPointerReport;
    if (type == kPointerDown || type == kPointerReport) lastReport_ = clock_.now();
    pressed_ = kind != Input::Kind::PointerUp;
    const Point inside{std::clamp(at.x, 0, screen_.w - 1), std::clamp(at.y, 0, screen_.h - 1)};
    if (down) tip_.press(inside);
    if (kind == Input::Kind::PointerMove) tip_.move(inside);
    if (kind == Input::Kind::PointerUp) tip_.lift();
    event(type, inside.x, inside.y);
    panel_.wetInk(tip_.ink());
}

int Loop::run(Player* player) {
    // Before the explorer paints itself: a script that begins with a picture never needs its page.
    act(player);
    settle();
    while (!stopped()) {
        passTime(player);
        act(player);
    }
    if (interrupted()) leadHome();
    return status_;
}

void Loop::act(Player* player) {
    const Instant now = clock_.now();
    if (!stopped()) panel_.advance();
    fireTimers(now);
    repeatPress(now);
    if (player != nullptr && !stopped() && player->resumeAt() <= now) player->play();
}

// A keyboard's text counts, other modals are cancelled, a press in progress is dropped, and an open popup takes the
// first tap; a program that is still there after a few of each has no way back.
void Loop::leadHome() {
    constexpr int kMostTaps = 4;
    constexpr int kMostModals = 8;
    const auto finish = [this](Modal& modal) {
        if (const std::string composed = display_.takeComposed(); !composed.empty()) modal.text(composed);
        modal.finish();
        return true;
    };
    for (int taps = 0; taps < kMostTaps && !atHome() && handler_ != nullptr; ++taps) {
        for (int i = 0; i < kMostModals && command(finish); ++i) {
        }
        event(kPointerDown, wayBack_.x, wayBack_.y);
        event(kPointerUp, wayBack_.x, wayBack_.y);
    }
}

void Loop::stop(int status) {
    if (stopped_) return;
    stopped_ = true;
    status_ = status;
}

void Loop::deliver(int type, int par1, int par2) {
    if (handler_ == nullptr) return;
    const Visit visit(*this);
    const bool traced = !atHome();
    if (traced) trace_.enter("event", type, par1, par2);
    const int result = handler_(type, par1, par2);
    if (traced) trace_.leave(result);
}

void Loop::call(const Callback& callback) {
    const Visit visit(*this);
    trace_.enter(callback.entry);
    callback.run();
    trace_.leave();
}

void Loop::fireTimers(Instant now) {
    // One by one, since each may set or clear others.
    while (!stopped()) {
        const std::optional<DueTimer> timer = timers_.takeDue(now);
        if (!timer) return;
        fire(*timer);
    }
}

void Loop::fire(const DueTimer& timer) {
    // A real clock's lost time stays lost: catching up after a suspend would be a storm of timers.
    if (clock_.isVirtual()) firing_ = timer.due;
    call({"timer " + jsonQuoted(timer.name), [&timer] {
              if (timer.plain != nullptr) return timer.plain();
              timer.withContext(timer.context);
          }});
    firing_.reset();
    settle();
}

void Loop::repeatPress(Instant now) {
    if (!repeatAt_ || *repeatAt_ > now) return;
    Modal* const modal = modals_.top();
    if (stopped() || modal == nullptr || !modal->repeats()) return repeatAt_.reset();
    repeatAt_ = now + kRepeatInterval;
    modal->repeat();
    settle();
}

void Loop::settle() {
    if (visiting_) return;
    while (settleOne()) {
    }
}

bool Loop::settleOne() {
    if (!entries_.empty()) {
        const Callback entry = std::move(entries_.front());
        entries_.pop_front();
        call(entry);
    } else if (std::exchange(repaintDue_, false)) {
        deliver(kRepaint, 0, 0);
    } else if (const std::optional<Callback> callback = modals_.takeClosed()) {
        call(*callback);
    } else {
        return false;
    }
    return true;
}

std::optional<Instant> Loop::nextInstant(const Player* player) const {
    std::optional<Instant> next = timers_.nextDue();
    const auto consider = [&](std::optional<Instant> instant) {
        if (instant && (!next || *instant < *next)) next = instant;
    };
    consider(panel_.nextStep());
    consider(repeatAt_);
    if (player != nullptr) consider(player->resumeAt());
    return next;
}

void Loop::passTime(const Player* player) {
    std::optional<Instant> until = nextInstant(player);
    if (clock_.isVirtual()) {
        // Without a script nothing moves a virtual clock: the program waits to be ended.
        if (player == nullptr) until.reset();
        if (until) {
            clock_.advanceTo(*until);
            return;
        }
    }
    std::optional<Milliseconds> patience;
    if (until) patience = std::max(*until - clock_.now(), Milliseconds{0});
    std::optional<Input> taken = display_.wait(patience);
    while (taken) {
        input(*taken);
        // A flood of input holds up neither timers nor the panel.
        until = nextInstant(player);
        if (stopped() || (until && *until <= clock_.now())) return;
        taken = display_.wait(Milliseconds{0});
    }
}

}  // namespace host
