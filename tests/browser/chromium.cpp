#include "browser/chromium.h"

#include <fcntl.h>
#include <glib.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include "platform/host/files/surface_picture.h"

namespace {

constexpr const char* kProgram = "/usr/bin/chromium";
constexpr int kAnswerLimit = 60 * 1000;  // milliseconds; a loaded machine starts a browser slowly

std::string inQuotes(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') json += '\\';
        json += c;
    }
    return json + '"';
}

/// The string value of a field; empty when there is none. Escapes are left as they are.
std::string jsonField(const std::string& json, const std::string& name) {
    const std::string key = inQuotes(name) + ":\"";
    const std::size_t at = json.find(key);
    if (at == std::string::npos) return {};
    const std::size_t begin = at + key.size();
    return json.substr(begin, json.find('"', begin) - begin);
}

int openPipe(const std::string& path) {
    mkfifo(path.c_str(), 0600);
    return open(path.c_str(), O_RDWR | O_CLOEXEC);  // both ways, so that it waits for nobody
}

}  // namespace

bool Chromium::installed() { return std::filesystem::exists(kProgram); }

Chromium::Chromium() {
    const std::string folder = profile_.path();
    to_ = openPipe(folder + "/commands");
    from_ = openPipe(folder + "/answers");
    process_.emplace(kProgram +
                     (" --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --hide-scrollbars"
                      " --disable-background-networking --disable-component-update --disable-sync"
                      " --remote-debugging-pipe --user-data-dir=" +
                      folder + " 3<" + folder + "/commands 4>" + folder + "/answers >/dev/null 2>&1"));
}

Chromium::~Chromium() {
    process_.reset();
    close(to_);
    close(from_);
}

std::string Chromium::receive() {
    std::size_t end = 0;
    while ((end = received_.find('\0')) == std::string::npos) {
        pollfd ready{from_, POLLIN, 0};
        std::array<char, 65536> buffer;
        const ssize_t got = poll(&ready, 1, kAnswerLimit) > 0 ? read(from_, buffer.data(), buffer.size()) : 0;
        if (got <= 0) throw std::runtime_error("chromium does not answer");
        received_.append(buffer.data(), static_cast<std::size_t>(got));
    }
    std::string message = received_.substr(0, end);
    received_.erase(0, end + 1);
    return message;
}

std::string Chromium::command(const std::string& method, const std::string& parameters) {
    const std::string id = "{\"id\":" + std::to_string(++commands_) + ",";
    std::string message = id + "\"method\":" + inQuotes(method) + ",\"params\":{" + parameters + "}";
    if (!session_.empty()) message += ",\"sessionId\":" + inQuotes(session_);
    message += '}';
    if (write(to_, message.c_str(), message.size() + 1) < 0) throw std::runtime_error("chromium has ended");
    for (;;) {
        std::string answer = receive();
        if (!answer.starts_with(id)) continue;  // an event
        if (answer.starts_with(id + "\"error\":")) throw std::runtime_error(method + ": " + answer);
        return answer;
    }
}

void Chromium::open(const std::string& address, host::Size window) {
    const std::string size = "\"width\":" + std::to_string(window.w) + ",\"height\":" + std::to_string(window.h);
    const std::string target = jsonField(command("Target.createTarget", R"("url":"about:blank")"), "targetId");
    const std::string attach = R"("flatten":true,"targetId":)" + inQuotes(target);
    session_ = jsonField(command("Target.attachToTarget", attach), "sessionId");
    command("Emulation.setDeviceMetricsOverride", size + R"(,"deviceScaleFactor":1,"mobile":false)");
    command("Page.navigate", "\"url\":" + inQuotes(address));
}

std::string Chromium::evaluate(const std::string& expression) {
    return jsonField(command("Runtime.evaluate", "\"expression\":" + inQuotes("String(" + expression + ")")), "value");
}

void Chromium::mouse(const std::string& type, host::Point at) {
    command("Input.dispatchMouseEvent", "\"type\":" + inQuotes(type) + ",\"x\":" + std::to_string(at.x) + ",\"y\":" +
                                            std::to_string(at.y) + R"(,"button":"left","buttons":1,"clickCount":1)");
}

void Chromium::strike(const std::string& key) {
    for (const char* type : {"keyDown", "keyUp"})
        command("Input.dispatchKeyEvent", "\"type\":" + inQuotes(type) + ",\"key\":" + inQuotes(key));
}

host::BitmapPtr Chromium::screenshot() {
    const std::string encoded = jsonField(command("Page.captureScreenshot", R"("format":"png")"), "data");
    gsize size = 0;
    const std::unique_ptr<guchar, decltype(&g_free)> png(g_base64_decode(encoded.c_str(), &size), g_free);
    std::string reason;
    return host::recordFromSurface(*host::decodeSurface(host::PictureKind::Png, {png.get(), size}, reason), reason);
}
