#include "browser/chromium.h"

#include <SDL_image.h>
#include <fcntl.h>
#include <glib.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <vector>

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

[[noreturn]] void becomeChromium(int commands, int answers, const std::string& profile) {
    // The browser's DevTools pipe is descriptors 3 and 4; first out of each other's way.
    const int in = fcntl(commands, F_DUPFD, 10);
    const int out = fcntl(answers, F_DUPFD, 10);
    dup2(in, 3);
    dup2(out, 4);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, 1);
    dup2(nowhere, 2);
    setpgid(0, 0);
    const std::string directory = "--user-data-dir=" + profile;
    execl(kProgram, kProgram, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
          "--disable-background-networking", "--disable-component-update", "--disable-sync", "--hide-scrollbars",
          "--remote-debugging-pipe", directory.c_str(), nullptr);
    _exit(127);
}

}  // namespace

std::string jsonField(const std::string& json, const std::string& name) {
    const std::string key = inQuotes(name) + ":\"";
    const std::size_t at = json.find(key);
    if (at == std::string::npos) return {};
    const std::size_t begin = at + key.size();
    return json.substr(begin, json.find('"', begin) - begin);
}

bool Chromium::installed() { return std::filesystem::exists(kProgram); }

Chromium::Chromium() {
    std::string directory = std::filesystem::temp_directory_path() / "colour-chromium-XXXXXX";
    profile_ = mkdtemp(directory.data());
    std::array<int, 2> commands{};
    std::array<int, 2> answers{};
    if (pipe2(commands.data(), O_CLOEXEC) != 0 || pipe2(answers.data(), O_CLOEXEC) != 0) return;
    signal(SIGPIPE, SIG_IGN);
    pid_ = fork();
    if (pid_ == 0) becomeChromium(commands[0], answers[1], profile_);
    close(commands[0]);
    close(answers[1]);
    to_ = commands[1];
    from_ = answers[0];
}

Chromium::~Chromium() {
    // The pipe's end is the browser's sign to go; what stays of its group after that is ended.
    close(to_);
    close(from_);
    for (int i = 0; i < 50 && waitpid(pid_, nullptr, WNOHANG) == 0; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    kill(-pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(profile_, ignored);
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
        if (answer.compare(0, id.size(), id) != 0) continue;  // an event
        if (answer.compare(id.size(), 8, "\"error\":") == 0) throw std::runtime_error(method + ": " + answer);
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

bool Chromium::becomesTrue(const std::string& expression) {
    for (int i = 0; i < 100; ++i) {
        if (evaluate(expression) == "true") return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

void Chromium::mouse(const std::string& type, host::Point at) {
    command("Input.dispatchMouseEvent", "\"type\":" + inQuotes(type) + ",\"x\":" + std::to_string(at.x) + ",\"y\":" +
                                            std::to_string(at.y) + R"(,"button":"left","buttons":1,"clickCount":1)");
}

void Chromium::strike(const std::string& key) {
    command("Input.dispatchKeyEvent", R"("type":"keyDown","key":)" + inQuotes(key));
    command("Input.dispatchKeyEvent", R"("type":"keyUp","key":)" + inQuotes(key));
}

Chromium::Picture Chromium::screenshot() {
    const std::string encoded = jsonField(command("Page.captureScreenshot", R"("format":"png")"), "data");
    gsize size = 0;
    guchar* png = g_base64_decode(encoded.c_str(), &size);
    const Picture read(IMG_Load_RW(SDL_RWFromConstMem(png, static_cast<int>(size)), 1), SDL_FreeSurface);
    g_free(png);
    return {SDL_ConvertSurfaceFormat(read.get(), SDL_PIXELFORMAT_RGB24, 0), SDL_FreeSurface};
}
