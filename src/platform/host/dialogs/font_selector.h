#pragma once

#include <memory>
#include <string>

#include "platform/callbacks.h"
#include "platform/host/touch/desk.h"
#include "platform/host/touch/modal.h"

namespace host {

/// What the application asks of the font selector; see OpenFontSelector.
struct FontRequest {
    std::string title;
    std::string font;
    bool withSize = true;
    font_callback_t callback = nullptr;
};

[[nodiscard]] std::unique_ptr<Modal> makeFontSelector(const Desk& desk, const FontRequest& request);

}  // namespace host
