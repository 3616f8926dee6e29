#pragma once

#include <string>
#include <string_view>

#include "platform/bitmap.h"
#include "platform/host/base/device.h"

namespace host {

/// A colour argument: 0xRRGGBB in a trace.
struct TraceColour {
    Rgb value;
};
/// A double argument printed with %.0f.
struct TraceRounded {
    double value;
};

/// The record of all that crosses the border (docs/session-format.md). Every line is written at once, so a
/// crash loses nothing. Does nothing, at the cost of one test a call, until it is opened.
class Trace {
public:
    Trace() = default;
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    /// Starts a new file with the device line. False, with the reason in `error`, when it cannot be written.
    [[nodiscard]] bool open(const std::string& path, const Device& device, bool fastSleep, std::string& error);

    /// The platform calls the application; every enter has one leave.
    template <typename... Arguments>
    void enter(std::string_view entry, const Arguments&... arguments) {
        if (file_ < 0) return;
        begin("> ", entry, arguments...);
        end();
    }
    void leave();
    void leave(int result);

    /// The application calls the platform.
    template <typename... Arguments>
    void call(std::string_view name, const Arguments&... arguments) {
        if (file_ < 0) return;
        begin("", name, arguments...);
        end();
    }
    /// The same with an answer behind '='.
    template <typename Answer, typename... Arguments>
    void answered(std::string_view name, const Answer& answer, const Arguments&... arguments) {
        if (file_ < 0) return;
        begin("", name, arguments...);
        line_ += " =";
        field(answer);
        end();
    }
    /// The application asks something that changes nothing.
    template <typename Answer, typename... Arguments>
    void question(std::string_view name, const Answer& answer, const Arguments&... arguments) {
        if (file_ < 0) return;
        begin("? ", name, arguments...);
        line_ += " =";
        field(answer);
        end();
    }

private:
    template <typename... Arguments>
    void begin(std::string_view mark, std::string_view name, const Arguments&... arguments) {
        line_ = mark;
        line_ += name;
        (field(arguments), ...);
    }
    void end();
    void field(int value);
    void field(double value);
    void field(TraceColour colour);
    void field(TraceRounded rounded);
    void field(const char* text);
    void field(const std::string& text);
    void field(const bitmap_s* bitmap);

    int file_ = -1;
    std::string path_;
    std::string line_;
};

}  // namespace host
