#pragma once

#include <memory>
#include <string>

#include "platform/callbacks.h"
#include "platform/host/touch/desk.h"
#include "platform/host/touch/modal.h"

namespace host {

/// What a message dialog shows; texts that begin with '@' are language keys and are translated.
struct Message {
    std::string title;
    std::string text;
    std::string button1;
    std::string button2;
};

/// A question with two buttons in the middle of the screen. Cancelling answers 1.
[[nodiscard]] std::unique_ptr<Modal> makeMessageDialog(const Desk& desk, const Message& message,
                                                       dialog_callback_t callback);

}  // namespace host
