#pragma once

#include <functional>
#include <string>

namespace host {

/// Something that the explorer tells a person, in one line.
struct Notice {
    std::string text{};
    /// The label of a button beside it; empty where there is nothing to do.
    std::string button{};
    /// What the button does. Without it, the button goes on with what the notice has held up.
    std::function<void()> act{};
};

}  // namespace host
