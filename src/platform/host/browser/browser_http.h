#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The head of an HTTP request, as far as it matters here.
struct HttpRequest {
    std::string method;
    std::string path;  ///< without the query
    std::string host;
    std::string origin;
    std::string webSocketKey;  ///< empty: an ordinary request
};

/// A head without its closing empty line; no value when it is malformed.
[[nodiscard]] std::optional<HttpRequest> parseHttpRequest(std::string_view head);

/// True when the request names this machine by a number, "localhost" or its own name. A page of someone else's whose
/// name has been pointed at this machine (DNS rebinding) still asks for that name.
[[nodiscard]] bool namesThisMachine(const HttpRequest& request);

/// The answer that refuses a request, with `status` such as "404 Not Found".
[[nodiscard]] std::string httpRefusal(std::string_view status);

/// Our page and the parts of noVNC that it loads, read-only; no other file can be reached.
class BrowserPages {
public:
    BrowserPages(std::filesystem::path page, std::filesystem::path noVnc)
        : page_(std::move(page)), noVnc_(std::move(noVnc)) {}

    /// What is missing of the page, or nothing.
    [[nodiscard]] std::optional<std::filesystem::path> missing() const;

    /// The whole answer to a request for a file.
    [[nodiscard]] std::string answer(const HttpRequest& request) const;

private:
    [[nodiscard]] std::filesystem::path fileFor(std::string_view path) const;

    std::filesystem::path page_;
    std::filesystem::path noVnc_;
};

}  // namespace host
