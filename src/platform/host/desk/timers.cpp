#include "platform/host/desk/timers.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

bool earlier(const DueTimer& a, const DueTimer& b) { return a.due < b.due; }

}  // namespace

void Timers::set(const char* name, timer_callback_t callback, Instant due) {
    const std::string known = name != nullptr ? name : "";
    std::erase_if(pending_, [&](const DueTimer& timer) { return timer.plain != nullptr && timer.name == known; });
    if (callback == nullptr) return;
    pending_.push_back({known, due, callback, nullptr, nullptr});
}

void Timers::set(const char* name, timer_context_callback_t callback, void* context, Instant due) {
    const std::string known = name != nullptr ? name : "";
    if (callback == nullptr) {
        std::erase_if(pending_, [&](const DueTimer& timer) {
            return timer.withContext != nullptr && timer.name == known && timer.context == context;
        });
        return;
    }
    clear(callback, context);
    pending_.push_back({known, due, nullptr, callback, context});
}

void Timers::clear(timer_context_callback_t callback, void* context) {
    std::erase_if(pending_, [&](const DueTimer& timer) {
        return timer.withContext != nullptr && timer.withContext == callback && timer.context == context;
    });
}

std::optional<Instant> Timers::nextDue() const {
    const auto next = std::min_element(pending_.begin(), pending_.end(), earlier);
    if (next == pending_.end()) return std::nullopt;
    return next->due;
}

std::optional<DueTimer> Timers::takeDue(Instant now) {
    // The list stands in the order of setting, and min_element returns the first of equals.
    const auto next = std::min_element(pending_.begin(), pending_.end(), earlier);
    if (next == pending_.end() || next->due > now) return std::nullopt;
    DueTimer due = std::move(*next);
    pending_.erase(next);
    return due;
}

}  // namespace host
