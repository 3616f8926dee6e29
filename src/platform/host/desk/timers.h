#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/callbacks.h"
#include "platform/host/base/clock.h"

namespace host {

/// A timer that has fallen due. Exactly one of the callbacks is set.
struct DueTimer {
    std::string name;
    Instant due{};
    timer_callback_t plain = nullptr;
    timer_context_callback_t withContext = nullptr;
    void* context = nullptr;
};

/// Pending one-shot timers, known by name or by (callback, context). Setting a pending one replaces it. A null callback
/// cancels the pending timer of that name, or of that name and context. A null name is an empty one.
class Timers {
public:
    void set(const char* name, timer_callback_t callback, Instant due);
    void set(const char* name, timer_context_callback_t callback, void* context, Instant due);
    /// Nothing happens when no such timer is pending.
    void clear(timer_context_callback_t callback, void* context);

    [[nodiscard]] std::optional<Instant> nextDue() const;
    /// Takes out the earliest timer due at `now` or before; of two due at once, the one set first.
    [[nodiscard]] std::optional<DueTimer> takeDue(Instant now);

private:
    std::vector<DueTimer> pending_;
};

}  // namespace host
