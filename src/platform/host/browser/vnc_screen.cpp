#include "platform/host/browser/vnc_screen.h"

#include <rfb/rfb.h>

#include <algorithm>
#include <utility>

#include "platform/host/browser/vnc_keyboard.h"

namespace host {

namespace {

constexpr int kBytesPerPixel = 4;

VncScreen& screenOf(rfbClientPtr client) { return *static_cast<VncScreen*>(client->screen->screenData); }
VncKeyboard& keyboardOf(rfbClientPtr client) { return *static_cast<VncKeyboard*>(client->clientData); }

void copyRow(const std::uint8_t* from, std::uint8_t* to, int pixels, PixelFormat format) {
    if (format == PixelFormat::Grey8) {
        for (int i = 0; i < pixels; ++i, ++from, to += kBytesPerPixel) to[0] = to[1] = to[2] = *from;
        return;
    }
    for (int i = 0; i < pixels; ++i, from += 3, to += kBytesPerPixel) std::copy(from, from + 3, to);
}

}  // namespace

VncScreen::VncScreen(Size panel, const std::string& password)
    : size_(panel),
      pixels_(static_cast<std::size_t>(panel.w) * static_cast<std::size_t>(panel.h) * kBytesPerPixel, 0xFF),
      password_(password) {
    rfbLogEnable(FALSE);
    rfb_ = rfbGetScreen(nullptr, nullptr, panel.w, panel.h, 8, 3, kBytesPerPixel);
    rfb_->desktopName = "Colour";
    rfb_->screenData = this;
    rfb_->frameBuffer = reinterpret_cast<char*>(pixels_.data());
    rfb_->cursor = nullptr;  // otherwise the library draws one into the picture
    rfb_->alwaysShared = TRUE;
    if (!password_.empty()) {
        passwords_ = {password_.data(), nullptr};
        rfb_->authPasswdData = passwords_.data();
        rfb_->passwordCheck = rfbCheckPasswordByList;
    }
    rfb_->ptrAddEvent = [](int buttons, int x, int y, rfbClientPtr client) {
        screenOf(client).pointer(client, buttons != 0, {x, y});
    };
    rfb_->kbdAddEvent = [](rfbBool down, rfbKeySym keysym, rfbClientPtr client) {
        screenOf(client).typed(keyboardOf(client).key(keysym, down != 0));
    };
    rfb_->setXCutText = [](char* text, int length, rfbClientPtr client) {
        keyboardOf(client).setClipboard({text, static_cast<std::size_t>(length)});
    };
}

VncScreen::~VncScreen() { rfbScreenCleanup(rfb_); }

void VncScreen::present(const Framebuffer& shown, Rect area) {
    if (area.empty()) return;
    for (int y = area.y; y < area.bottom(); ++y) {
        const auto offset = static_cast<std::size_t>(y) * static_cast<std::size_t>(size_.w) + std::size_t(area.x);
        copyRow(shown.at(area.x, y), pixels_.data() + offset * kBytesPerPixel, area.w, shown.format());
    }
    rfbMarkRectAsModified(rfb_, area.x, area.y, area.x + area.w, area.y + area.h);
}

std::optional<Input> VncScreen::takeInput() {
    if (inputs_.empty()) return {};
    Input first = std::move(inputs_.front());
    inputs_.pop_front();
    return first;
}

void VncScreen::clientGone(const rfbClientRec* client) {
    if (drawing_ == client) pointer(client, false, last_);
}

void VncScreen::pointer(const rfbClientRec* client, bool pressed, Point at) {
    if (drawing_ != nullptr && drawing_ != client) return;
    if (drawing_ == nullptr && !pressed) return;
    Input input;
    input.kind = drawing_ == nullptr ? Input::Kind::PointerDown : Input::Kind::PointerMove;
    if (!pressed) input.kind = Input::Kind::PointerUp;
    input.at = {std::clamp(at.x, 0, size_.w - 1), std::clamp(at.y, 0, size_.h - 1)};
    drawing_ = pressed ? client : nullptr;
    last_ = input.at;
    inputs_.push_back(std::move(input));
}

void VncScreen::typed(std::optional<Input> input) {
    if (textInput_ && input) inputs_.push_back(std::move(*input));
}

}  // namespace host
