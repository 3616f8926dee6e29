#include "platform/host/browser/browser_connection.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

namespace host {

namespace {

using namespace std::chrono_literals;

constexpr auto kSilence = 300ms;   // a VNC client says nothing before it is greeted; a browser asks well before this
constexpr auto kAdmission = 120s;  // to type a password in
constexpr auto kFarewell = 2s;     // to take the last bytes
constexpr std::size_t kLargestHead = 8192;
constexpr std::size_t kWaiting = 262144;  // bytes on their way to one client before it gets no more updates
constexpr std::size_t kMostWaiting = 1048576;
constexpr std::string_view kHeadEnd = "\r\n\r\n";
constexpr std::string_view kVncAnswer = "RFB ";

}  // namespace

BrowserConnection::BrowserConnection(Descriptor socket, VncScreen& screen, const BrowserPages& pages,
                                     std::chrono::milliseconds patience, SteadyTime now)
    : socket_(std::move(socket)), screen_(screen), pages_(pages), patience_(patience), deadline_(now + kSilence) {}

bool BrowserConnection::wantsToReceive() const { return output_.size() - sent_ < kMostWaiting; }

void BrowserConnection::receive(SteadyTime now) {
    std::array<char, 16384> buffer;
    const ssize_t got = recv(socket_.get(), buffer.data(), buffer.size(), 0);
    if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) return;
    if (got <= 0) {
        client_.reset();
        socket_ = Descriptor();
        return;
    }
    const std::string_view bytes(buffer.data(), static_cast<std::size_t>(got));
    if (phase_ == Phase::Undecided) {
        sort(bytes, now);
    } else if (phase_ == Phase::Panel) {
        hear(bytes, now);
    }
}

void BrowserConnection::sort(std::string_view bytes, SteadyTime now) {
    if (head_.empty()) deadline_ = now + patience_;
    head_ += bytes;
    if (head_.substr(0, kVncAnswer.size()) == kVncAnswer) {
        meetClient(now);
        hear(std::exchange(head_, {}), now);
        return;
    }
    const std::size_t end = head_.find(kHeadEnd);
    if (end != std::string::npos) {
        answer(std::string_view(head_).substr(0, end), now);
    } else if (head_.size() > kLargestHead) {
        finish(now);
    }
}

void BrowserConnection::answer(std::string_view head, SteadyTime now) {
    const std::optional<HttpRequest> request = parseHttpRequest(head);
    if (request && namesThisMachine(*request) && !request->webSocketKey.empty()) {
        openWebSocket(*request, now);
        return;
    }
    if (!request) {
        output_ = httpRefusal("400 Bad Request");
    } else {
        output_ = namesThisMachine(*request) ? pages_.answer(*request) : httpRefusal("403 Forbidden");
    }
    finish(now);
}

void BrowserConnection::openWebSocket(const HttpRequest& request, SteadyTime now) {
    // A browser tells which page asks. Only our own may; any other page could draw, or read what is drawn.
    if (request.origin != "http://" + request.host) {
        output_ = httpRefusal("403 Forbidden");
        finish(now);
        return;
    }
    output_ =
        "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
        "Sec-WebSocket-Accept: " +
        webSocketAccept(request.webSocketKey) + "\r\n\r\n";
    webSocket_.emplace();
    meetClient(now);
}

void BrowserConnection::meetClient(SteadyTime now) {
    phase_ = Phase::Panel;
    client_.emplace(screen_);
    say(client_->takeOutput());
    deadline_ = now + kAdmission;
}

void BrowserConnection::hear(std::string_view bytes, SteadyTime now) {
    if (!webSocket_) {
        client_->receive(bytes);
    } else {
        const WebSocketReader::Result result = webSocket_->read(bytes);
        client_->receive(result.payload);
        output_ += result.reply;
        if (result.closed) finish(now);
    }
    if (!client_) return;
    say(client_->takeOutput());
    if (client_->ended()) finish(now);
}

void BrowserConnection::say(std::string_view bytes) {
    if (bytes.empty()) return;
    if (webSocket_) {
        output_ += webSocketFrame(bytes);
    } else {
        output_ += bytes;
    }
}

void BrowserConnection::finish(SteadyTime now) {
    phase_ = Phase::Closing;
    client_.reset();
    deadline_ = now + kFarewell;
}

void BrowserConnection::fetchUpdates() {
    if (!client_ || stalled_) return;
    client_->update(kWaiting);
    say(client_->takeOutput());
}

void BrowserConnection::send(SteadyTime now) {
    if (!wantsToSend()) fetchUpdates();
    while (wantsToSend()) {
        const ssize_t gone = ::send(socket_.get(), output_.data() + sent_, output_.size() - sent_, MSG_NOSIGNAL);
        if (gone < 0) break;
        stalled_ = false;
        sent_ += static_cast<std::size_t>(gone);
        if (wantsToSend()) continue;
        output_.clear();
        sent_ = 0;
        fetchUpdates();
    }
    setDeadline(now);
    if (phase_ == Phase::Closing && !wantsToSend()) shutdown(socket_.get(), SHUT_WR);
}

void BrowserConnection::setDeadline(SteadyTime now) {
    if (phase_ != Phase::Panel) return;
    const bool stalls = wantsToSend();
    if (stalls && !stalled_) deadline_ = now + patience_;
    if (!stalls && client_->admitted()) deadline_.reset();
    stalled_ = stalls;
}

void BrowserConnection::pass(SteadyTime now) {
    if (!deadline_ || now < *deadline_) return;
    if (phase_ == Phase::Undecided && head_.empty()) {
        meetClient(now);
        return;
    }
    client_.reset();
    socket_ = Descriptor();
}

}  // namespace host
