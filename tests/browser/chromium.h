#pragma once

#include <glib.h>
#include <sys/stat.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "platform/host/base/geometry.h"
#include "platform/host/files/png_file.h"
#include "platform/host/record/json.h"
#include "support/process.h"
#include "support/temporary_folder.h"

/// Debian's chromium without a screen, driven over the DevTools protocol on a pair of pipes.
class Chromium {
public:
    static constexpr const char* kProgram = "/usr/bin/chromium";

    Chromium() {
        const std::string commands = folder_ / "commands", answers = folder_ / "answers";
        for (const std::string& pipe : {commands, answers}) mkfifo(pipe.c_str(), 0600);
        process_.emplace(kProgram +
                         (" --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --hide-scrollbars"
                          " --disable-background-networking --disable-component-update --disable-sync"
                          " --remote-debugging-pipe --user-data-dir=" +
                          folder_.path().string() + " 3<" + commands + " 4>" + answers + " >/dev/null 2>&1"));
        commands_.open(commands);
        answers_.open(answers);
    }

    struct Window {
        host::Size size;
        double ratio = 1;  ///< device pixels to a CSS pixel
        bool isPhone = false;
    };
    /// Opens a page in a tab of its own, whose window is so large.
    void open(const std::string& address, const Window& window) {
        session_.clear();
        const std::string target = fieldOf(command("Target.createTarget", R"("url":"about:blank")"), "targetId");
        const std::string attach = R"("flatten":true,"targetId":)" + host::jsonQuoted(target);
        session_ = fieldOf(command("Target.attachToTarget", attach), "sessionId");
        const std::string phone = window.isPhone ? "true" : "false";
        command("Emulation.setDeviceMetricsOverride",
                "\"width\":" + std::to_string(window.size.w) + ",\"height\":" + std::to_string(window.size.h) +
                    ",\"deviceScaleFactor\":" + std::to_string(window.ratio) + ",\"mobile\":" + phone);
        command("Emulation.setTouchEmulationEnabled", "\"enabled\":" + phone);
        command("Page.navigate", "\"url\":" + host::jsonQuoted(address));
    }

    /// A command of the protocol, with parameters in JSON; its answer.
    std::string command(const std::string& method, const std::string& parameters = {}) {
        const std::string id = "{\"id\":" + std::to_string(++count_) + ",";
        commands_ << id << "\"method\":" << host::jsonQuoted(method) << ",\"params\":{" << parameters << '}';
        if (!session_.empty()) commands_ << ",\"sessionId\":" << host::jsonQuoted(session_);
        commands_ << '}' << '\0' << std::flush;
        for (std::string answer; std::getline(answers_, answer, '\0');) {
            if (answer.starts_with(id + "\"error\":")) throw std::runtime_error(method + ": " + answer);
            if (answer.starts_with(id)) return answer;  // others are events
        }
        throw std::runtime_error("chromium has ended");
    }
    /// The value of a JavaScript expression that gives a string or a promise of one. Escapes are left as they are.
    std::string evaluate(const std::string& expression) {
        const std::string script = host::jsonQuoted("(async () => String(await (" + expression + ")))()");
        return fieldOf(command("Runtime.evaluate", R"("awaitPromise":true,"expression":)" + script), "value");
    }

    /// `type` is mousePressed, mouseMoved or mouseReleased, `pointer` mouse or pen.
    void mouse(const std::string& type, host::Point at, const std::string& pointer = "mouse") {
        command("Input.dispatchMouseEvent", placed(at) + R"(,"button":"left","buttons":1,"clickCount":1,"type":")" +
                                                type + R"(","pointerType":")" + pointer + '"');
    }
    /// `type` is touchStart, touchMove or touchEnd.
    void touch(const std::string& type, host::Point finger) {
        command("Input.dispatchTouchEvent", "\"type\":\"" + type + "\",\"touchPoints\":[{" + placed(finger) + "}]");
    }
    /// Presses a key, which the browser names so and which types `text`.
    void strike(const std::string& key, const std::string& text = {}) {
        for (const std::string type : {"keyDown", "keyUp"})
            command("Input.dispatchKeyEvent",
                    "\"type\":\"" + type + "\",\"key\":\"" + key + "\",\"text\":\"" + text + '"');
    }
    /// Puts text in as an emoji picker does, without a key.
    void insert(const std::string& text) { command("Input.insertText", "\"text\":" + host::jsonQuoted(text)); }

    /// What the window shows, in device pixels of depth 24.
    host::BitmapPtr screenshot() {
        const std::string encoded = fieldOf(command("Page.captureScreenshot", R"("format":"png")"), "data");
        gsize size = 0;
        const std::unique_ptr<guchar, decltype(&g_free)> png(g_base64_decode(encoded.c_str(), &size), g_free);
        std::istringstream file({reinterpret_cast<const char*>(png.get()), size});
        std::string reason;
        return host::loadPng(file, reason).bitmap;
    }

private:
    static std::string placed(host::Point at) {
        return "\"x\":" + std::to_string(at.x) + ",\"y\":" + std::to_string(at.y);
    }

    /// The string value of a field; empty when there is none. Escapes are left as they are.
    static std::string fieldOf(const std::string& json, const std::string& name) {
        const std::string key = host::jsonQuoted(name) + ":\"";
        const std::size_t at = json.find(key);
        if (at == std::string::npos) return {};
        const std::string rest = json.substr(at + key.size());
        return rest.substr(0, rest.find('"'));
    }

    TemporaryFolder folder_;
    std::optional<Process> process_;
    std::ofstream commands_;
    std::ifstream answers_;
    int count_ = 0;
    std::string session_;
};
