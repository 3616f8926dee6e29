#include "platform/host/session/options.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <string_view>

#include "platform/host/session/panel_option.h"

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr int kWrongUsage = 2;
constexpr long kHighestPort = 65'535;
constexpr long kHighestLogLevel = 9;
constexpr long kLastSecond = 253'402'300'799;  // the end of the year 9999

constexpr const char* kIntroduction =
    "Draw by hand on an e-ink panel, or on a window or browser page that stands for one.";
constexpr const char* kExamples =
    "Examples:\n"
    "  colour                                          the explorer, with all your pictures\n"
    "  colour --new --panel 600x800@167,grey           a new picture on a small grey panel\n"
    "  colour --display browser --port 8080            draw at http://127.0.0.1:8080/\n"
    "  colour --display headless --script draw.session --trace draw.trace\n"
    "                                                  play a recorded session without a display\n";

[[noreturn]] void fail(std::string message) {
    std::replace(message.begin(), message.end(), '\n', ' ');
    std::fprintf(stderr, "colour: %s\n", message.c_str());
    std::exit(kWrongUsage);
}

/// Why a file, or with `directory` a folder, cannot be read; empty when it can.
std::string unreadable(const std::string& path, bool directory) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) return "no such file or folder";
    if (fs::is_directory(status) != directory) return directory ? "not a folder" : "a folder, not a file";
    return access(path.c_str(), R_OK) == 0 ? "" : std::strerror(errno);
}

void requireReadable(const char* what, const std::string& path, bool directory = false) {
    const std::string reason = unreadable(path, directory);
    if (!reason.empty()) fail(std::string("cannot read the ") + what + " '" + path + "': " + reason);
}

/// "de", "pt_BR", "zh-Hant": what a file of texts can be named after.
bool isLanguageCode(std::string_view code) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    const auto isPart = [&](std::string_view part, std::size_t shortest, std::size_t longest) {
        return part.size() >= shortest && part.size() <= longest && std::all_of(part.begin(), part.end(), isLetter);
    };
    const std::size_t mark = code.find_first_of("_-");
    if (!isPart(code.substr(0, mark), 2, 3)) return false;
    return mark == std::string_view::npos || isPart(code.substr(mark + 1), 2, 8);
}

void checkPicture(const std::string& picture) {
    std::string ending = fs::path(picture).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (ending == ".jpg" || ending == ".jpeg") {
        fail("'" + picture + "' is not opened: a JPEG picture cannot be saved without loss");
    }
    if (ending != ".bmp" && ending != ".png")
        fail("'" + picture + "' is not a picture: it ends in neither .bmp nor .png");
    // A path on the device is one of the storage's, which knows where it really is.
    if (!picture.starts_with("/mnt/ext1/")) requireReadable("picture", picture);
}

/// The command line as CLI11 reads it; what it cannot tell by itself is checked afterwards.
class CommandLine {
public:
    CommandLine() : app_(kIntroduction, "colour") {
        describeDrawing();
        describePanel();
        describePlaces();
        describeSessions();
        app_.set_help_flag("-h,--help", "Print this page and leave")->group("Help");
        app_.set_version_flag("--version", std::string("Colour ") + COLOUR_VERSION, "Print the version and leave")
            ->group("Help");
        app_.get_formatter()->column_width(34);
        app_.get_formatter()->label("Positionals", "Picture");
        app_.get_formatter()->label("OPTIONS", "OPTIONS");
        app_.footer(kExamples);
    }

    Options read(int argc, const char* const* argv) {
        try {
            app_.parse(argc, argv);
        } catch (const CLI::Success& success) {
            std::exit(app_.exit(success));
        } catch (const CLI::ParseError& error) {
            fail(error.what());
        }
        check();
        return options_;
    }

private:
    void describeDrawing() {
        text("PICTURE", options_.picture, "Open this picture at once; \"back\" leads to the explorer", "");
        app_.add_flag("--new", options_.newPicture, "Begin with a new picture")->group("Picture");
    }

    void describePanel() {
        checked(
            "--panel", "WxH@DPI[,...]", "Panel",
            [this](const std::string& value, std::string& error) {
                const std::optional<Device> device = parsePanel(value, error);
                if (device) options_.device = *device;
            },
            "The panel in pixels and dots to the inch, then as you like ,colour or ,grey ,scale=S ,platform=N\n"
            "(1404x1872@300,colour)");
        checked(
            "--display", "KIND", "Panel",
            [this](const std::string& value, std::string& error) {
                static const std::map<std::string, DisplayKind> kinds{{"window", DisplayKind::Window},
                                                                      {"browser", DisplayKind::Browser},
                                                                      {"headless", DisplayKind::Headless}};
                const auto kind = kinds.find(value);
                if (kind == kinds.end()) error = "the display is window, browser or headless";
                if (kind != kinds.end()) options_.display = kind->second;
            },
            "window, browser or headless\n(a window where a display answers, else the browser)");
        app_.add_flag("--waveforms", options_.waveforms, "Refresh as slowly as e-ink really does")->group("Panel");
        number("--port", "N", "Browser", 1, kHighestPort, options_.port, "The page's port");
        text("--listen", options_.listen, "Serve other machines too, at this address; needs a password", "Browser",
             "ADDRESS");
        text("--password-file", options_.passwordFile, "The password is this file's first line", "Browser", "FILE");
    }

    void describePlaces() {
        text("--storage", options_.storage, "Where pictures are kept", "Places", "DIR");
        text("--theme", options_.theme, "Icons, texts and keyboards to use", "Places", "DIR");
        text("--language", options_.language, "Language of all texts: en, de, fr, es, ru, ar", "Places", "CODE");
    }

    void describeSessions() {
        text("--script", options_.script, "Play this session script", "Sessions", "FILE");
        text("--trace", options_.trace, "Record every call between application and platform", "Sessions", "FILE");
        number("--clock", "SECONDS", "Sessions", 0, kLastSecond, options_.clock,
               "When a headless run begins, since the epoch (1700000000)");
        number("--log", "LEVEL", "Sessions", 0, kHighestLogLevel, options_.logLevel,
               "Print log lines up to this level, 0 to 9 (0)");
    }

    void text(const char* name, std::string& value, const char* help, const char* group, const char* type = "FILE") {
        CLI::Option* const option = app_.add_option(name, value, help)->type_name(type);
        if (*group != '\0') option->group(group);
    }

    /// `take` stores the value, or says in its second argument what is wrong with it.
    void checked(const char* name, const char* type, const char* group,
                 std::function<void(const std::string&, std::string&)> take, const char* help) {
        app_.add_option_function<std::string>(
                name,
                [name, take = std::move(take)](const std::string& value) {
                    std::string error;
                    take(value, error);
                    if (!error.empty()) fail(std::string(name) + " " + value + ": " + error);
                },
                help)
            ->type_name(type)
            ->group(group);
    }

    template <typename Number>
    void number(const char* name, const char* type, const char* group, long lowest, long highest, Number& target,
                const char* help) {
        checked(
            name, type, group,
            [lowest, highest, &target](const std::string& value, std::string& error) {
                const std::optional<long> taken = wholeNumber(value, lowest, highest);
                if (!taken)
                    error = "not a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
                if (taken) target = static_cast<Number>(*taken);
            },
            help);
    }

    [[nodiscard]] bool given(const char* name) const { return app_.count(name) > 0; }

    void check() const {
        if (given("PICTURE") && options_.newPicture) fail("give a PICTURE or --new, not both");
        if (given("PICTURE")) checkPicture(options_.picture);
        if (given("--script")) requireReadable("script", options_.script);
        if (given("--theme")) requireReadable("theme", options_.theme, true);
        if (given("--password-file")) requireReadable("password file", options_.passwordFile);
        if (given("--listen") && !given("--password-file")) fail("--listen needs a password: add --password-file FILE");
        if (given("--language") && !isLanguageCode(options_.language)) {
            fail("--language " + options_.language + ": a language is a code such as en, de or pt_BR");
        }
        for (const char* name : {"--storage", "--trace", "--listen"}) {
            if (given(name) && app_.get_option(name)->as<std::string>().empty()) fail(std::string(name) + " is empty");
        }
    }

    CLI::App app_;
    Options options_;
};

}  // namespace

Options readOptions(int argc, const char* const* argv) { return CommandLine().read(argc, argv); }

}  // namespace host
