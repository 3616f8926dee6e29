#include "platform/host/browser/browser_display.h"

#include <unistd.h>

#include <algorithm>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <fstream>
#include <iostream>
#include <list>
#include <utility>

#include "platform/host/browser/addresses.h"
#include "platform/host/browser/visitor.h"
#include "platform/host/screen/paint.h"

namespace host {

namespace {

using namespace std::chrono_literals;
using boost::asio::ip::tcp;
using boost::system::error_code;
using std::chrono::steady_clock;

constexpr int kFirstPort = 6080;
constexpr int kLastPort = 6179;
/// Whoever has shown no cookie yet: a browser opens about six connections at once. The oldest goes, so that people who
/// only connect lock nobody out.
constexpr std::ptrdiff_t kMostStrangers = 16;
constexpr std::ptrdiff_t kMostVisitors = 64;
constexpr auto kRest = 1s;  // when no connection can be accepted, before trying again
constexpr std::ptrdiff_t kShortestPassword = 8;

class BrowserDisplay : public Display {
public:
    BrowserDisplay(Size panel, PixelFormat format) : stage_{panel, format} {}

    /// False, and the reason in `error`.
    bool open(const BrowserSettings& settings, const std::string& password, std::string& error);

    void present(const Framebuffer& shown, Rect area) override;
    std::optional<Input> wait(std::optional<std::chrono::milliseconds> timeout) override;
    void wake() override;
    void flush() override;
    void wetInk(const WetInk* ink) override;
    void setTextInput(bool on, Rect near) override { stage_.typing = on ? std::optional(near) : std::nullopt; }

private:
    [[nodiscard]] error_code listen(const tcp::endpoint& at);
    void proceed();
    void accept();
    void receive(tcp::socket socket);
    void limit(std::ptrdiff_t most, bool strangersOnly);

    boost::asio::io_context io_{1};
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> work_{io_.get_executor()};
    tcp::acceptor acceptor_{io_};
    boost::asio::steady_timer rest_{io_};
    bool accepting_ = false;
    bool woken_ = false;
    Stage stage_;
    std::optional<Site> site_;
    std::list<std::weak_ptr<Visitor>> visitors_;  ///< oldest first
};

bool BrowserDisplay::open(const BrowserSettings& settings, const std::string& password, std::string& error) {
    const std::string numeric = settings.listen.empty() ? "127.0.0.1" : settings.listen;
    error_code code;
    const boost::asio::ip::address address = boost::asio::ip::make_address(numeric, code);
    int port = settings.port == 0 ? kFirstPort : settings.port;
    if (code) {
        error = "cannot listen on " + numeric + ": not a numeric address";
        return false;
    }
    code = listen({address, static_cast<unsigned short>(port)});
    while (settings.port == 0 && code == boost::asio::error::address_in_use && port < kLastPort)
        code = listen({address, static_cast<unsigned short>(++port)});
    if (code) {
        error = "cannot listen on " + numeric + " port " + std::to_string(port) + ": " + code.message();
        return false;
    }
    const std::string token = keptToken();
    site_.emplace(Site{Admission(token, password, settings.hostNames), settings.page, port, settings.patience, stage_});
    const std::vector<std::string> pages = pageAddresses(numeric, port, password.empty() ? "?token=" + token : "");
    const bool withCodes = !address.is_loopback() && isatty(STDOUT_FILENO) != 0;
    for (const std::string& page : pages) std::cout << page << '\n' << (withCodes ? qrCode(page) : "") << std::flush;
    return true;
}

error_code BrowserDisplay::listen(const tcp::endpoint& at) try {
    acceptor_ = tcp::acceptor(io_, at);
    return {};
} catch (const boost::system::system_error& error) {
    return error.code();
}

void BrowserDisplay::present(const Framebuffer& shown, Rect area) {
    stage_.shown = &shown;
    for (const auto& client : site_->clients) client->changed(area);
}

void BrowserDisplay::wetInk(const WetInk* ink) {
    stage_.wet.reset();
    if (ink == nullptr) return;
    const int grey = luminance(toneOf(ink->colour)) * 0x010101;
    const Rgb colour = stage_.format == PixelFormat::Grey8 ? grey : ink->colour;
    // The way on from there the page knows itself, and sooner.
    stage_.wet = WetTip{ink->path.front(), colour, ink->width};
}

std::optional<Input> BrowserDisplay::wait(std::optional<std::chrono::milliseconds> timeout) {
    std::optional<SteadyTime> until;
    if (timeout) until = steady_clock::now() + *timeout;
    for (;;) {
        // Also while input is queued, so that a flood of it shows what it draws.
        flush();
        if (!stage_.inputs.empty()) {
            Input first = std::move(stage_.inputs.front());
            stage_.inputs.pop_front();
            return first;
        }
        if (std::exchange(woken_, false)) return {};
        if (!until) {
            io_.run_one();
        } else if (io_.run_one_until(*until) == 0) {
            return {};
        }
    }
}

void BrowserDisplay::wake() {
    boost::asio::post(io_, [this] { woken_ = true; });
}

// Nothing starts again by itself once it is done, so a poll comes to an end however much arrives.
void BrowserDisplay::flush() {
    proceed();
    if (io_.poll() > 0) proceed();
}

void BrowserDisplay::proceed() {
    std::erase_if(site_->clients, [](const auto& client) { return client->closed(); });
    for (const auto& client : site_->clients) client->proceed();
    if (!accepting_) accept();
}

void BrowserDisplay::accept() {
    accepting_ = true;
    acceptor_.async_accept([this](error_code error, tcp::socket socket) {
        if (!error) {
            accepting_ = false;
            return receive(std::move(socket));
        }
        // Out of descriptors, say: the next try would fail at once too.
        rest_.expires_after(kRest);
        rest_.async_wait([this](error_code) { accepting_ = false; });
    });
}

void BrowserDisplay::receive(tcp::socket socket) {
    const auto visitor = std::make_shared<Visitor>(std::move(socket), *site_);
    visitors_.push_back(visitor);
    limit(kMostStrangers, true);
    limit(kMostVisitors, false);
    visitor->serve();
}

void BrowserDisplay::limit(std::ptrdiff_t most, bool strangersOnly) {
    visitors_.remove_if([](const auto& visitor) { return visitor.expired(); });
    const auto counts = [=](const auto& visitor) { return !strangersOnly || !visitor.lock()->admitted(); };
    if (std::count_if(visitors_.begin(), visitors_.end(), counts) <= most) return;
    const auto oldest = std::find_if(visitors_.begin(), visitors_.end(), counts);
    oldest->lock()->drop();
    visitors_.erase(oldest);
}

/// False, and the reason in `error`.
bool readPassword(const std::string& file, std::string& password, std::string& error) {
    if (file.empty()) return true;
    std::ifstream stream(file);
    if (!std::getline(stream, password)) {
        error = file + ": no password can be read from it";
        return false;
    }
    if (password.ends_with('\r')) password.pop_back();
    const auto beginsCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    if (std::count_if(password.begin(), password.end(), beginsCharacter) >= kShortestPassword) return true;
    error = file + ": the password in its first line has fewer than eight characters";
    return false;
}

}  // namespace

std::unique_ptr<Display> openBrowser(const BrowserSettings& settings, Size panel, PixelFormat format,
                                     std::string& error) {
    std::string password;
    if (!readPassword(settings.passwordFile, password, error)) return nullptr;
    for (const char* file : {"index.html", "door.html"}) {
        std::error_code ignored;
        if (std::filesystem::is_regular_file(settings.page / file, ignored)) continue;
        error = (settings.page / file).string() + ": missing, the browser display needs it";
        return nullptr;
    }
    auto display = std::make_unique<BrowserDisplay>(panel, format);
    if (!display->open(settings, password, error)) return nullptr;
    return display;
}

}  // namespace host
