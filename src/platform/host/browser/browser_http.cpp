#include "platform/host/browser/browser_http.h"

#include <arpa/inet.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <iterator>
#include <utility>

namespace host {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kTypes = {
    {{".html", "text/html; charset=utf-8"},
     {".css", "text/css; charset=utf-8"},
     {".js", "text/javascript; charset=utf-8"},
     {".svg", "image/svg+xml"}}};
constexpr std::string_view kNoVncPath = "/novnc/";

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

std::string trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return std::string(text);
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find("\r\n");
    const std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 2);
    return line;
}

bool readRequestLine(std::string_view line, HttpRequest& request) {
    const std::size_t first = line.find(' ');
    const std::size_t last = line.rfind(' ');
    if (first == std::string_view::npos || last <= first + 1) return false;
    if (line.substr(last + 1, 5) != "HTTP/" || line[first + 1] != '/') return false;
    const std::string_view target = line.substr(first + 1, last - first - 1);
    request.method = line.substr(0, first);
    request.path = target.substr(0, target.find('?'));
    return true;
}

// Letters, digits, '-', '_' and '.' only, and no component that is empty or begins with a dot: such a path cannot leave
// its directory.
bool harmless(std::string_view path) {
    char previous = 0;
    for (const char c : path) {
        const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_';
        if (!plain && c != '.' && c != '/') return false;
        if (!plain && previous == '/') return false;
        previous = c;
    }
    return !path.empty() && path.front() == '/';
}

std::string_view typeOf(const std::filesystem::path& file) {
    const std::string extension = file.extension().string();
    for (const auto& [known, type] : kTypes) {
        if (known == extension) return type;
    }
    return {};
}

// Nothing may be loaded from elsewhere, and no other page may frame ours to make a person draw unknowingly.
std::string response(std::string_view status, std::string_view type, std::string_view body) {
    std::string text = "HTTP/1.1 ";
    text.append(status).append("\r\nContent-Type: ").append(type);
    text += "\r\nContent-Length: " + std::to_string(body.size());
    text +=
        "\r\nConnection: close\r\nCache-Control: no-cache\r\nX-Content-Type-Options: nosniff\r\n"
        "Content-Security-Policy: default-src 'self'; img-src 'self' data:; "
        "connect-src 'self' ws:; frame-ancestors 'none'\r\n\r\n";
    return text.append(body);
}

}  // namespace

std::optional<HttpRequest> parseHttpRequest(std::string_view head) {
    HttpRequest request;
    if (!readRequestLine(takeLine(head), request)) return {};
    while (!head.empty()) {
        const std::string_view line = takeLine(head);
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) return {};
        const std::string name = lower(line.substr(0, colon));
        const std::string value = trimmed(line.substr(colon + 1));
        if (name == "host") request.host = value;
        if (name == "origin") request.origin = value;
        if (name == "sec-websocket-key") request.webSocketKey = value;
    }
    return request;
}

bool namesThisMachine(const HttpRequest& request) {
    const bool bracketed = !request.host.empty() && request.host.front() == '[';
    const std::size_t end = bracketed ? request.host.find(']') : request.host.find(':');
    const std::string name = lower(request.host.substr(bracketed ? 1 : 0, bracketed ? end - 1 : end));
    std::array<unsigned char, sizeof(in6_addr)> number{};
    if (inet_pton(bracketed ? AF_INET6 : AF_INET, name.c_str(), number.data()) == 1) return true;
    std::array<char, 256> own{};
    gethostname(own.data(), own.size() - 1);
    return name == "localhost" || (!name.empty() && name == lower(own.data()));
}

std::string httpRefusal(std::string_view status) {
    return response(status, "text/plain; charset=utf-8", std::string(status) + "\n");
}

std::optional<std::filesystem::path> BrowserPages::missing() const {
    for (const std::filesystem::path& file : {page_ / "index.html", noVnc_ / "core" / "rfb.js"}) {
        std::error_code ignored;
        if (!std::filesystem::is_regular_file(file, ignored)) return file;
    }
    return {};
}

std::filesystem::path BrowserPages::fileFor(std::string_view path) const {
    if (path == "/") return page_ / "index.html";
    if (!harmless(path)) return {};
    if (path.substr(0, kNoVncPath.size()) != kNoVncPath) return page_ / path.substr(1);
    const std::string_view inside = path.substr(kNoVncPath.size());
    if (inside.substr(0, 5) != "core/" && inside.substr(0, 7) != "vendor/") return {};
    return noVnc_ / inside;
}

std::string BrowserPages::answer(const HttpRequest& request) const {
    if (request.method != "GET") return httpRefusal("405 Method Not Allowed");
    const std::filesystem::path file = fileFor(request.path);
    const std::string_view type = typeOf(file);
    std::error_code ignored;
    if (type.empty() || !std::filesystem::is_regular_file(file, ignored)) return httpRefusal("404 Not Found");
    std::ifstream stream(file, std::ios::binary);
    const std::string body{std::istreambuf_iterator<char>(stream), {}};
    return response("200 OK", type, body);
}

}  // namespace host
