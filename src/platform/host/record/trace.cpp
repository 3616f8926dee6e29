#include "platform/host/record/trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "platform/host/record/json.h"

namespace host {

namespace {

constexpr mode_t kMode = 0666;

/// Like printf's %g and %.0f, but never with a locale's comma.
std::string printed(double value, std::chars_format format, int precision) {
    constexpr std::size_t kLongest = 320;  // the largest double in full, and a sign
    std::array<char, kLongest> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, format, precision);
    return {text.data(), result.ptr};
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

Trace::~Trace() {
    if (file_ >= 0) close(file_);
}

bool Trace::open(const std::string& path, const Device& device, bool fastSleep, std::string& error) {
    file_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kMode);
    if (file_ < 0) {
        error = "cannot write the trace '" + path + "': " + std::strerror(errno);
        return false;
    }
    path_ = path;
    line_ = "# device width=" + std::to_string(device.width) + " height=" + std::to_string(device.height) +
            " dpi=" + std::to_string(device.dpi) + " scale=" + printed(device.scale, std::chars_format::general, 6) +
            " colormask=" + (device.colour ? "1" : "0") + " platform=" + std::to_string(device.platform) +
            " fast_sleep=" + (fastSleep ? "1" : "0");
    end();
    return true;
}

void Trace::leave() {
    if (file_ < 0) return;
    line_ = "<";
    end();
}

void Trace::leave(int result) {
    if (file_ < 0) return;
    begin("", "<", result);
    end();
}

void Trace::end() {
    line_ += '\n';
    if (writeAll(file_, line_)) return;
    std::fprintf(stderr, "colour: the trace '%s' ends here: %s\n", path_.c_str(), std::strerror(errno));
    close(file_);
    file_ = -1;
}

void Trace::field(int value) {
    line_ += ' ';
    line_ += std::to_string(value);
}

void Trace::field(double value) {
    line_ += ' ';
    line_ += printed(value, std::chars_format::general, 6);
}

void Trace::field(TraceColour colour) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), " 0x%06X", static_cast<unsigned>(colour.value));
    line_ += text.data();
}

void Trace::field(TraceRounded rounded) {
    line_ += ' ';
    // Adding zero turns a negative zero into zero.
    line_ += printed(std::nearbyint(rounded.value) + 0.0, std::chars_format::fixed, 0);
}

void Trace::field(const char* text) {
    line_ += ' ';
    line_ += text != nullptr ? jsonQuoted(text) : "null";
}

void Trace::field(const std::string& text) {
    line_ += ' ';
    line_ += jsonQuoted(text);
}

void Trace::field(const bitmap_s* bitmap) {
    line_ += ' ';
    if (bitmap == nullptr) {
        line_ += "null";
        return;
    }
    line_ += std::to_string(bitmap->width) + 'x' + std::to_string(bitmap->height) + 'x' + std::to_string(bitmap->depth);
}

}  // namespace host
