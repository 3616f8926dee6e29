#pragma once

#include <string_view>

namespace scratch {

/// A failure of the system's: calls of this name ("any": of all that are known here) fail with `error` while `times`
/// lasts, after `after` that succeed.
struct Fault {
    std::string_view call;
    int error = 0;
    int after = 0;
    int times = 1 << 30;
};

/// What fails now in this program; no call at first.
extern Fault fault;

}  // namespace scratch
