#include "platform/host/browser/panel_client.h"

#include <linux/sockios.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/beast/websocket.hpp>
#include <utility>

#include "platform/host/browser/messages.h"

namespace host {

namespace {

using namespace std::chrono_literals;
namespace asio = boost::asio;
namespace beast = boost::beast;
namespace websocket = beast::websocket;
using boost::system::error_code;

/// Raw bytes of the panel in one message: compressed in 0.1 ms where it is white, and in 3 ms where it is noise, so
/// that the pen never waits longer for a page.
constexpr int kBandBytes = 65536;
constexpr std::size_t kMessageBuffer = kBandBytes + 1024;
/// On their way in the system, for which ink waits when a client is slow.
constexpr int kSystemBuffer = 262144;
constexpr std::size_t kMostInputs = 1024;
/// A machine that has vanished is noticed by then.
constexpr auto kSilence = 60s;
/// Looks at a client within its patience, before that counts as over.
constexpr int kLooks = 4;

int nextId() {
    static int last = 0;
    return ++last;
}

}  // namespace

PanelClient::PanelClient(asio::ip::tcp::socket socket, Stage& stage, std::chrono::milliseconds patience)
    : socket_(std::move(socket)),
      stage_(stage),
      patience_(patience),
      id_(nextId()),
      unsent_(stage.size),
      watch_(socket_.get_executor()) {
    changed({0, 0, stage.size.w, stage.size.h});
}

void PanelClient::accept(const Request& request) {
    websocket::permessage_deflate deflate;
    deflate.server_enable = true;
    // Most clients are on this machine: time counts, bytes do not.
    deflate.compLevel = 1;
    socket_.set_option(deflate);
    socket_.set_option(websocket::stream_base::timeout{patience_, kSilence, true});
    socket_.binary(true);
    socket_.read_message_max(kLargestMessage);
    socket_.write_buffer_bytes(kMessageBuffer);
    error_code ignored;
    socket_.next_layer().set_option(asio::ip::tcp::no_delay(true), ignored);
    socket_.next_layer().set_option(asio::socket_base::send_buffer_size(kSystemBuffer), ignored);
    socket_.async_accept(request, [self = shared_from_this()](error_code error) {
        if (error) return self->leave();
        self->phase_ = Phase::Open;
        self->watch();
    });
}

void PanelClient::proceed() {
    if (phase_ != Phase::Open) return;
    if (!listening_ && stage_.inputs.size() < kMostInputs) listen();
    if (!sending_) send();
}

void PanelClient::listen() {
    listening_ = true;
    const asio::mutable_buffer rest = asio::buffer(heard_) + heardBytes_;
    socket_.async_read_some(rest, [self = shared_from_this()](error_code error, std::size_t bytes) {
        self->listening_ = false;
        self->heardBytes_ += bytes;
        if (error) return self->leave();
        if (self->socket_.is_message_done()) self->hear();
    });
}

void PanelClient::hear() {
    const std::string_view bytes(heard_.data(), std::exchange(heardBytes_, 0));
    std::optional<Message> message;
    if (socket_.got_binary()) message = readMessage(bytes, stage_.size);
    if (!message) {
        leave();
        socket_.async_close(websocket::close_code::protocol_error, [self = shared_from_this()](error_code) {});
        return;
    }
    if (const auto* const pointer = std::get_if<PointerMessage>(&*message)) {
        const SteadyTime now = std::chrono::steady_clock::now();
        if (!stage_.drawing.pointer(id_, *pointer, pointer->path, now)) refused_ = true;
    } else if (stage_.typing) {
        stage_.inputs.push_back(std::get<Input>(std::move(*message)));
    }
}

void PanelClient::send() {
    std::optional<std::string> message = nextMessage();
    if (!message) return;
    message_ = std::move(*message);
    sending_ = true;
    socket_.async_write(asio::buffer(message_), [self = shared_from_this()](error_code error, std::size_t) {
        self->sending_ = false;
        ++self->sent_;
        if (error) self->leave();
    });
}

std::optional<std::string> PanelClient::nextMessage() {
    if (!std::exchange(toldPanel_, true)) return panelMessage(stage_.size, stage_.format);
    refused_ = refused_ && stage_.drawing.drawnByAnother(id_);
    if (std::exchange(toldRefused_, refused_) != refused_) return noticeMessage(refused_);
    if (std::exchange(toldTyping_, stage_.typing) != stage_.typing) return typingMessage(stage_.typing);
    if (stage_.shown == nullptr) return {};
    // After the piece that it goes on from, but not after all else that is to be seen.
    if (toldWet_ != stage_.wet && (next_.empty() || std::exchange(pixelsSent_, false))) {
        toldWet_ = stage_.wet;
        return wetInkMessage(toldWet_);
    }
    const Rect band = nextBand(stage_.shown->bytesPerPixel());
    if (band.empty()) return {};
    pixelsSent_ = toldWet_ != stage_.wet;
    return pixelsMessage(*stage_.shown, band);
}

void PanelClient::changed(Rect area) {
    unsent_.add(area);
    more_ = more_ || !next_.empty();
    next_ = area;
}

Rect PanelClient::nextBand(int bytesPerPixel) {
    Rect band{};
    while (band.empty() && (!next_.empty() || more_)) {
        if (next_.empty()) {
            next_ = {0, 0, stage_.size.w, stage_.size.h};
            more_ = false;
        }
        const int rows = std::min(next_.h, kBandBytes / (next_.w * bytesPerPixel));
        band = unsent_.take({next_.x, next_.y, next_.w, rows}, [](Rect) {});
        next_.y += rows;
        next_.h -= rows;
    }
    return band;
}

void PanelClient::watch() {
    int waiting = 0;
    ioctl(socket_.next_layer().native_handle(), SIOCOUTQ, &waiting);
    const std::pair taken(sent_, waiting);
    idle_ = sending_ && std::exchange(taken_, taken) == taken ? idle_ + 1 : 0;
    if (idle_ >= kLooks) {
        error_code ignored;
        socket_.next_layer().close(ignored);
        return leave();
    }
    watch_.expires_after(patience_ / kLooks);
    watch_.async_wait([self = shared_from_this()](error_code error) {
        if (!error && self->phase_ == Phase::Open) self->watch();
    });
}

void PanelClient::leave() {
    if (std::exchange(phase_, Phase::Closed) == Phase::Closed) return;
    stage_.drawing.leave(id_);
    watch_.cancel();
}

}  // namespace host
