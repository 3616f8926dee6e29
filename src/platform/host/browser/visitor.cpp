#include "platform/host/browser/visitor.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/write.hpp>
#include <boost/beast/websocket/rfc6455.hpp>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

namespace host {

namespace {

namespace fs = std::filesystem;
namespace http = boost::beast::http;
using boost::system::error_code;

constexpr std::uint32_t kLargestHead = 8192;
constexpr std::uint64_t kLargestForm = 4096;
constexpr std::size_t kMostClients = 32;

constexpr const char* kPlain = "text/plain; charset=utf-8";
constexpr std::array<std::pair<std::string_view, const char*>, 6> kTypes = {
    {{".html", "text/html; charset=utf-8"},
     {".css", "text/css; charset=utf-8"},
     {".js", "text/javascript; charset=utf-8"},
     {".svg", "image/svg+xml"},
     {".png", "image/png"},
     {".webmanifest", "application/manifest+json"}}};

/// What the door is made of, and what a browser asks for without its cookies.
constexpr std::array<std::string_view, 4> kOpenToAll = {"/door", "/icon", "/manifest.webmanifest", "/texts.js"};

constexpr const char* kStrangeName =
    "Colour does not answer to this name. Open the address that it has printed, or start it with --host-name NAME,\n"
    "NAME being the machine's name as it stands in the browser's address field.";
constexpr const char* kStrangePage =
    "Only Colour's own page may show the panel. A proxy before it must pass on the Host that the browser names.";
constexpr const char* kFull = "Too many pages show the panel already. Close one of them.";
constexpr const char* kTooManyTries = "Too many wrong passwords are being tried. Wait ten seconds and try again.";

constexpr std::string_view kDoorState = "@state@";

/// Letters, digits, '-', '_' and '.' only, and no component that is empty or begins with a dot: such a path cannot
/// leave its directory.
bool harmless(std::string_view path) {
    char previous = 0;
    for (const char c : path) {
        const bool plain = g_ascii_isalnum(c) || c == '-' || c == '_';
        if (!plain && c != '.' && c != '/') return false;
        if (!plain && previous == '/') return false;
        previous = c;
    }
    return path.starts_with('/');
}

bool openToAll(std::string_view path) {
    return std::any_of(kOpenToAll.begin(), kOpenToAll.end(),
                       [path](std::string_view beginning) { return path.starts_with(beginning); });
}

const char* typeOf(const fs::path& file) {
    const std::string extension = file.extension().string();
    const auto known =
        std::find_if(kTypes.begin(), kTypes.end(), [&](const auto& type) { return type.first == extension; });
    return known == kTypes.end() ? nullptr : known->second;
}

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A field's value in "name=value&name=value", with its escapes undone; nothing when it is not there.
std::optional<std::string> formField(std::string_view form, const char* name) {
    const std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)> fields(
        g_uri_parse_params(form.data(), static_cast<gssize>(form.size()), "&", G_URI_PARAMS_WWW_FORM, nullptr),
        g_hash_table_unref);
    if (fields == nullptr) return {};
    const void* const value = g_hash_table_lookup(fields.get(), name);
    return value != nullptr ? std::optional(std::string(static_cast<const char*>(value))) : std::nullopt;
}

}  // namespace

Visitor::Visitor(boost::asio::ip::tcp::socket socket, Site& site)
    : stream_(std::move(socket)), site_(site), timer_(stream_.get_executor()) {
    parser_.header_limit(kLargestHead);
    parser_.body_limit(kLargestForm);
}

void Visitor::serve() {
    stream_.expires_after(site_.patience);
    http::async_read(stream_, buffer_, parser_, [self = shared_from_this()](error_code error, std::size_t) {
        error ? self->say(Status::bad_request, "This is no request that Colour knows.") : self->answer();
    });
}

std::string Visitor::header(http::field name) const { return std::string(parser_.get()[name]); }

void Visitor::answer() {
    const std::string target(parser_.get().target());
    const std::size_t end = std::min(target.find('?'), target.size());
    const std::string path = target.substr(0, end);
    if (!site_.admission.answersTo(header(http::field::host))) return say(Status::forbidden, kStrangeName);
    admitted_ = site_.admission.admits(header(http::field::cookie), site_.port);
    if (path == "/door" && parser_.get().method() == http::verb::post)
        return judge(formField(parser_.get().body(), "password").value_or(""));
    if (parser_.get().method() != http::verb::get)
        return say(Status::method_not_allowed, "Colour only shows its page.");
    if (path == "/panel") return answerPanel();
    const std::optional<std::string> token = formField(target.substr(std::min(end + 1, target.size())), "token");
    if (path == "/" && token) {
        if (admitted_) return sendOn(false);
        if (!site_.admission.asksForPassword()) return judge(*token);
    }
    answerPage(path);
}

void Visitor::answerPage(const std::string& path) {
    if (path == "/door") return sendOn(false);
    if (path == "/" && !admitted_) return showDoor(site_.admission.asksForPassword() ? "password" : "token");
    if (!admitted_ && !openToAll(path))
        return say(Status::forbidden, "Open the address that Colour has printed first.");
    if (path == "/admitted") {
        if (site_.clients.size() >= kMostClients) return say(Status::service_unavailable, kFull);
        return send(Status::no_content, kPlain, {});
    }
    const fs::path file = site_.page / (path == "/" ? "index.html" : path.substr(1));
    const char* const type = typeOf(file);
    std::error_code ignored;
    if (!harmless(path) || type == nullptr || !fs::is_regular_file(file, ignored))
        return say(Status::not_found, "There is no such file.");
    send(Status::ok, type, contentOf(file));
}

void Visitor::answerPanel() {
    if (!boost::beast::websocket::is_upgrade(parser_.get()))
        return say(Status::bad_request, "The panel is a WebSocket.");
    // A browser tells which page asks. Only our own may; any other page could draw, or read what is drawn. Before a
    // proxy it may have come by https.
    const std::string origin = header(http::field::origin);
    const std::string host = header(http::field::host);
    if (origin != "http://" + host && origin != "https://" + host) return say(Status::forbidden, kStrangePage);
    if (!admitted_) return say(Status::forbidden, "Open the address that Colour has printed first.");
    if (site_.clients.size() >= kMostClients) return say(Status::service_unavailable, kFull);
    stream_.expires_never();
    auto client = std::make_shared<PanelClient>(stream_.release_socket(), site_.stage, site_.patience);
    site_.clients.push_back(client);
    client->accept(parser_.get());
}

void Visitor::judge(const std::string& secret) {
    const auto verdict = site_.admission.judge(secret, std::chrono::steady_clock::now());
    if (!verdict) return say(Status::too_many_requests, kTooManyTries);
    stream_.expires_never();
    timer_.expires_at(verdict->at);
    timer_.async_wait([self = shared_from_this(), right = verdict->right](error_code error) {
        if (error) return;
        if (right) return self->sendOn(true);
        self->showDoor(self->site_.admission.asksForPassword() ? "wrong" : "token");
    });
}

void Visitor::showDoor(const char* state) {
    std::string page = contentOf(site_.page / "door.html");
    const std::size_t place = page.find(kDoorState);
    if (place != std::string::npos) page.replace(place, kDoorState.size(), state);
    send(Status::forbidden, "text/html; charset=utf-8", std::move(page));
}

void Visitor::sendOn(bool withCookie) {
    // As long as browsers keep any: whoever comes back to the page next year need not scan again.
    constexpr const char* kKept = "; Max-Age=34560000; HttpOnly; SameSite=Strict; Path=/";
    if (withCookie) response_.set(http::field::set_cookie, site_.admission.cookie(site_.port) + kKept);
    response_.set(http::field::location, "/");
    send(Status::see_other, kPlain, {});
}

void Visitor::say(Status status, const char* sentence) { send(status, kPlain, std::string(sentence) + "\n"); }

void Visitor::send(Status status, const std::string& type, std::string body) {
    response_.result(status);
    response_.keep_alive(false);
    response_.set(http::field::content_type, type);
    response_.set(http::field::cache_control, "no-cache");
    // Nothing may be loaded from elsewhere or told to it, such as the token in the address; and no other page may frame
    // ours to make a person draw unknowingly.
    response_.set(
        "Content-Security-Policy",
        "default-src 'self'; img-src 'self' data: blob:; connect-src 'self' ws: wss:; frame-ancestors 'none'; "
        "base-uri 'none'; form-action 'self'");
    response_.set("X-Content-Type-Options", "nosniff");
    response_.set("Referrer-Policy", "no-referrer");
    response_.body() = std::move(body);
    response_.prepare_payload();
    stream_.expires_after(site_.patience);
    http::async_write(stream_, response_, [self = shared_from_this()](error_code, std::size_t) {
        error_code ignored;
        self->stream_.socket().shutdown(boost::asio::ip::tcp::socket::shutdown_send, ignored);
    });
}

}  // namespace host
