#include "browser/chromium.h"

#include <glib.h>
#include <sys/stat.h>

#include <sstream>
#include <stdexcept>

#include "platform/host/files/png_file.h"
#include "platform/host/record/json.h"

namespace {

constexpr const char* kProgram = "/usr/bin/chromium";

std::string inQuotes(const std::string& text) { return host::jsonQuoted(text); }

std::string place(host::Point at) { return "\"x\":" + std::to_string(at.x) + ",\"y\":" + std::to_string(at.y); }

/// The string value of a field; empty when there is none. Escapes are left as they are.
std::string jsonField(const std::string& json, const std::string& name) {
    const std::string key = inQuotes(name) + ":\"";
    const std::size_t at = json.find(key);
    if (at == std::string::npos) return {};
    const std::string rest = json.substr(at + key.size());
    return rest.substr(0, rest.find('"'));
}

}  // namespace

bool Chromium::installed() { return std::filesystem::exists(kProgram); }

Chromium::Chromium() {
    const std::string commands = profile_.path() / "commands";
    const std::string answers = profile_.path() / "answers";
    for (const std::string& pipe : {commands, answers}) mkfifo(pipe.c_str(), 0600);
    process_.emplace(kProgram +
                     (" --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --hide-scrollbars"
                      " --disable-background-networking --disable-component-update --disable-sync"
                      " --remote-debugging-pipe --user-data-dir=" +
                      profile_.path().string() + " 3<" + commands + " 4>" + answers + " >/dev/null 2>&1"));
    commands_.open(commands);
    answers_.open(answers);
}

std::string Chromium::command(const std::string& method, const std::string& parameters) {
    const std::string id = "{\"id\":" + std::to_string(++count_) + ",";
    commands_ << id << "\"method\":" << inQuotes(method) << ",\"params\":{" << parameters << '}';
    if (!session_.empty()) commands_ << ",\"sessionId\":" << inQuotes(session_);
    commands_ << '}' << '\0' << std::flush;
    for (std::string answer; std::getline(answers_, answer, '\0');) {
        if (answer.starts_with(id + "\"error\":")) throw std::runtime_error(method + ": " + answer);
        if (answer.starts_with(id)) return answer;  // others are events
    }
    throw std::runtime_error("chromium has ended");
}

void Chromium::open(const std::string& address, const Window& window) {
    session_.clear();
    const std::string target = jsonField(command("Target.createTarget", R"("url":"about:blank")"), "targetId");
    const std::string attach = R"("flatten":true,"targetId":)" + inQuotes(target);
    session_ = jsonField(command("Target.attachToTarget", attach), "sessionId");
    const std::string phone = window.isPhone ? "true" : "false";
    command("Emulation.setDeviceMetricsOverride",
            "\"width\":" + std::to_string(window.size.w) + ",\"height\":" + std::to_string(window.size.h) +
                ",\"deviceScaleFactor\":" + std::to_string(window.ratio) + ",\"mobile\":" + phone);
    command("Emulation.setTouchEmulationEnabled", "\"enabled\":" + phone);
    command("Page.navigate", "\"url\":" + inQuotes(address));
}

std::string Chromium::evaluate(const std::string& expression) {
    const std::string script = "(async () => String(await (" + expression + ")))()";
    return jsonField(command("Runtime.evaluate", R"("awaitPromise":true,"expression":)" + inQuotes(script)), "value");
}

void Chromium::mouse(const std::string& type, host::Point at, const std::string& pointer) {
    command("Input.dispatchMouseEvent", "\"type\":" + inQuotes(type) + "," + place(at) + ",\"pointerType\":" +
                                            inQuotes(pointer) + R"(,"button":"left","buttons":1,"clickCount":1)");
}

void Chromium::touch(const std::string& type, const std::vector<host::Point>& fingers) {
    std::string points;
    for (const host::Point at : fingers) points += (points.empty() ? "{" : ",{") + place(at) + "}";
    command("Input.dispatchTouchEvent", "\"type\":" + inQuotes(type) + ",\"touchPoints\":[" + points + "]");
}

void Chromium::strike(const std::string& key, const std::string& text) {
    for (const char* type : {"keyDown", "keyUp"})
        command("Input.dispatchKeyEvent",
                "\"type\":" + inQuotes(type) + ",\"key\":" + inQuotes(key) + ",\"text\":" + inQuotes(text));
}

void Chromium::insert(const std::string& text) { command("Input.insertText", "\"text\":" + inQuotes(text)); }

host::BitmapPtr Chromium::screenshot() {
    const std::string encoded = jsonField(command("Page.captureScreenshot", R"("format":"png")"), "data");
    gsize size = 0;
    const std::unique_ptr<guchar, decltype(&g_free)> png(g_base64_decode(encoded.c_str(), &size), g_free);
    std::istringstream file({reinterpret_cast<const char*>(png.get()), size});
    std::string reason;
    return host::loadPng(file, reason).bitmap;
}
