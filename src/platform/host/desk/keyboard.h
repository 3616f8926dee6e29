#pragma once

#include <memory>
#include <string>

#include "platform/host/desk/desk.h"
#include "platform/host/desk/modal.h"
#include "platform/vistrel.h"

namespace host {

/// What the application asks of the on-screen keyboard; see OpenKeyboard.
struct KeyboardRequest {
    std::string title;
    char* buffer = nullptr;
    int maxBytes = 0;
    int flags = 0;
    keyboard_callback_t callback = nullptr;
};

[[nodiscard]] std::unique_ptr<Modal> makeKeyboard(const Desk& desk, const KeyboardRequest& request);

}  // namespace host
