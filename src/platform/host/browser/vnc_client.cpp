#include "platform/host/browser/vnc_client.h"

#include <rfb/rfb.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

// The one header of the library that does not say so itself; it needs rfb.h before it.
extern "C" {
#include <rfb/rfbregion.h>
}

namespace host {

namespace {

constexpr std::string_view kGreeting = "RFB 003.008\n";
constexpr int kPairBuffer = 1 << 20;  // bytes asked for; the system grants less

struct RegionDeleter {
    void operator()(sraRegion* region) const { sraRgnDestroy(region); }
};
using Region = std::unique_ptr<sraRegion, RegionDeleter>;

// Rows of the panel whose pixels, even uncompressed, fill no more than half of the pair's buffer.
int rowsThatFit(int socket, Size panel) {
    setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &kPairBuffer, sizeof kPairBuffer);
    int granted = 0;
    socklen_t size = sizeof granted;
    getsockopt(socket, SOL_SOCKET, SO_SNDBUF, &granted, &size);
    constexpr int kBytesPerPixel = 4;
    return std::max(1, granted / 2 / (panel.w * kBytesPerPixel));
}

Region topRows(sraRegion* region, int rows) {
    const Region bounds(sraRgnBBox(region));
    sraRect box{};
    sraRgnPopRect(bounds.get(), &box, 0);
    Region top(sraRgnCreateRect(box.x1, box.y1, box.x2, std::min(box.y2, box.y1 + rows)));
    sraRgnAnd(top.get(), region);
    return top;
}

}  // namespace

// The greeting is ours, so that the library starts only once the client's answer is there to be read.
VncClient::VncClient(VncScreen& screen) : screen_(screen), output_(kGreeting) {}

VncClient::~VncClient() {
    if (rfb_ == nullptr) return;
    screen_.clientGone(rfb_);
    rfbClientConnectionGone(rfb_);
}

VncStage VncClient::stage() const {
    if (rfb_ == nullptr) return VncStage::Version;
    switch (rfb_->state) {
        case rfbClientRec::RFB_PROTOCOL_VERSION:
            return VncStage::Version;
        case rfbClientRec::RFB_SECURITY_TYPE:
            return VncStage::SecurityType;
        case rfbClientRec::RFB_AUTHENTICATION:
            return VncStage::Authentication;
        case rfbClientRec::RFB_INITIALISATION:
        case rfbClientRec::RFB_INITIALISATION_SHARED:
            return VncStage::Initialisation;
        default:
            return VncStage::Normal;
    }
}

void VncClient::receive(std::string_view bytes) {
    received_ += bytes;
    std::size_t used = 0;
    while (!ended_) {
        const std::size_t taken = take(std::string_view(received_).substr(used));
        if (taken == 0) break;
        used += taken;
    }
    received_.erase(0, used);
}

std::size_t VncClient::take(std::string_view bytes) {
    if (skip_ > 0) {
        const std::size_t passed = std::min(skip_, bytes.size());
        skip_ -= passed;
        return passed;
    }
    const std::optional<std::size_t> size = vncMessageSize(stage(), bytes);
    ended_ = !size;
    if (!size || *size == 0) return 0;
    if (*size > kLargestVncMessage) {
        skip_ = *size;
        return take(bytes);
    }
    if (bytes.size() < *size) return 0;
    deliver(bytes.substr(0, *size));
    return *size;
}

void VncClient::deliver(std::string_view message) {
    if (rfb_ == nullptr) {
        ended_ = !connect(message);
        return;
    }
    const std::optional<std::string> vetted =
        stage() == VncStage::Normal ? vettedVncMessage(message) : std::string(message);
    if (!vetted || send(link_.get(), vetted->data(), vetted->size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) {
        ended_ = true;
        return;
    }
    rfbProcessClientMessage(rfb_);
    collect();
}

bool VncClient::connect(std::string_view version) {
    std::array<int, 2> pair{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair.data()) != 0) return false;
    link_ = Descriptor(pair[0]);
    Descriptor theirs(pair[1]);
    if (theirs.get() >= FD_SETSIZE) return false;  // the library waits with select
    if (send(link_.get(), version.data(), version.size(), MSG_NOSIGNAL) < 0) return false;
    sliceRows_ = rowsThatFit(theirs.get(), screen_.size());
    rfb_ = rfbNewClient(screen_.rfb(), theirs.release());
    if (rfb_ == nullptr) return false;
    rfb_->clientData = &keyboard_;
    const std::size_t before = output_.size();
    collect();
    output_.resize(before);  // the library's own greeting
    rfbProcessClientMessage(rfb_);
    collect();
    return !ended_;
}

void VncClient::update(std::size_t enough) {
    while (!ended_ && admitted() && output_.size() < enough) {
        Region due(sraRgnCreateRgn(rfb_->modifiedRegion));
        if (!sraRgnAnd(due.get(), rfb_->requestedRegion)) return;
        const Region requested(sraRgnCreateRgn(rfb_->requestedRegion));
        const Region slice = topRows(due.get(), sliceRows_);
        rfbSendFramebufferUpdate(rfb_, slice.get());
        collect();
        // One request may be answered by several updates: it stands until all that it asked for has been sent.
        if (sraRgnSubtract(due.get(), slice.get())) sraRgnOr(rfb_->requestedRegion, requested.get());
    }
}

std::string VncClient::takeOutput() { return std::exchange(output_, {}); }

void VncClient::collect() {
    std::array<char, 32768> buffer;
    for (;;) {
        const ssize_t got = recv(link_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (got <= 0) break;
        output_.append(buffer.data(), static_cast<std::size_t>(got));
    }
    if (rfb_->sock != RFB_INVALID_SOCKET) return;
    ended_ = true;
    screen_.clientGone(rfb_);
}

}  // namespace host
