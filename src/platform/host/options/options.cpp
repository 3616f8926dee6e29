#include "platform/host/options/options.h"

#include <glib.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "platform/host/files/picture_file.h"
#include "platform/host/options/panel_option.h"
#include "platform/host/options/whole_number.h"

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr int kWrongUsage = 2;
constexpr long kHighestPort = 65'535;
constexpr long kHighestLogLevel = 9;
constexpr long kLastSecond = 253'402'300'799;  // the end of the year 9999

constexpr const char* kVersion = "Colour " COLOUR_VERSION;

constexpr const char* kHelp = R"(Usage: colour [OPTIONS] [PICTURE]

Draw by hand on an e-ink panel, or on a window or a browser page that stands for one.

  PICTURE                open this picture at once; "back" leads to the explorer
  --new                  begin with a new picture

Panel
  --panel WxH@DPI[,colour|,grey][,scale=S][,platform=N]
                         its pixels, its dots to the inch, and what else it is; a scale above 1
                         makes everything larger (1404x1872@300,colour)
  --display KIND         window, browser or headless
                         (a window where a display answers, else the browser)
  --waveforms            refresh as real e-ink does: slowly, and under the pen in black and white

Browser display
  --port N               the page's port (the first free one from 6080)
  --listen ADDRESS       serve other machines too, at this address (0.0.0.0 for all that this one has)
  --password-file FILE   ask for the password in its first line instead of the printed address's token
  --host-name NAME       answer to this name too, such as a proxy's; may be given more than once

Places
  --storage DIR          where pictures are kept (~/.local/share/colour)
  --theme DIR            icons, texts and keyboards to use instead of the installed ones
  --language CODE        en, de, fr, es, ru or ar (as the environment says)

Sessions
  --script FILE          play this session script
  --trace FILE           record every call between application and platform
  --clock SECONDS        the time, since the epoch, at which a headless run begins (1700000000)
  --log LEVEL            print log lines up to this level, from 0 to 9 (0)

  -h, --help             print this page
  --version              print the version

Examples
  colour --new --panel 600x800@167,grey
  colour --display browser --port 8080
  colour --display headless --script draw.session --trace draw.trace
)";

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
bool isLanguageCode(const std::string& code) {
    return g_regex_match_simple("^[A-Za-z]{2,3}([_-][A-Za-z]{2,8})?\\z", code.c_str(), GRegexCompileFlags{},
                                GRegexMatchFlags{}) != FALSE;
}

DisplayKind displayKind(const std::string& name, std::string& error) {
    if (name == "window") return DisplayKind::Window;
    if (name == "browser") return DisplayKind::Browser;
    if (name == "headless") return DisplayKind::Headless;
    error = "the display is window, browser or headless";
    return DisplayKind::Automatic;
}

void checkPicture(const std::string& picture) {
    if (!isPictureName(picture))
        fail("'" + picture + "' is not a picture: it ends in none of .bmp, .png, .jpg, .webp, .gif and .tif");
    // A path on the device is one of the storage's, which knows where it really is.
    if (!picture.starts_with("/mnt/ext1/")) requireReadable("picture", picture);
}

/// The command line as CLI11 reads it; what CLI11 cannot tell by itself is checked afterwards.
class CommandLine {
public:
    CommandLine() {
        text("PICTURE", options_.picture);
        flag("--new", options_.newPicture);
        checked("--panel", [this](const std::string& value, std::string& error) {
            options_.device = parsePanel(value, error).value_or(options_.device);
        });
        checked("--display",
                [this](const std::string& value, std::string& error) { options_.display = displayKind(value, error); });
        flag("--waveforms", options_.waveforms);
        number("--port", 1, kHighestPort, options_.port);
        text("--listen", options_.listen);
        text("--password-file", options_.passwordFile);
        app_.add_option("--host-name", options_.hostNames)->type_name("value")->allow_extra_args(false);
        text("--storage", options_.storage);
        text("--theme", options_.theme);
        text("--language", options_.language);
        text("--script", options_.script);
        text("--trace", options_.trace);
        number("--clock", 0, kLastSecond, options_.clock);
        number("--log", 0, kHighestLogLevel, options_.logLevel);
        app_.set_help_flag();
        page("-h,--help", kHelp);
        page("--version", kVersion);
    }

    Options read(int argc, const char* const* argv) {
        try {
            app_.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            fail(error.what());
        }
        check();
        return options_;
    }

private:
    void text(const char* name, std::string& value) { app_.add_option(name, value)->type_name("value"); }
    void flag(const char* name, bool& value) { app_.add_flag(name, value)->disable_flag_override(); }

    void page(const char* name, const char* contents) {
        app_.add_flag_callback(name, [contents] {
            std::puts(contents);
            std::exit(0);
        });
    }

    /// `take` stores the value, or says in its second argument what is wrong with it.
    void checked(const char* name, std::function<void(const std::string&, std::string&)> take) {
        const auto report = [name, take = std::move(take)](const std::string& value) {
            std::string error;
            take(value, error);
            if (!error.empty()) fail(std::string(name) + " " + value + ": " + error);
        };
        app_.add_option_function<std::string>(name, report)->type_name("value");
    }

    template <typename Number>
    void number(const char* name, long lowest, long highest, Number& target) {
        checked(name, [lowest, highest, &target](const std::string& value, std::string& error) {
            const std::optional<long> taken = wholeNumber(value, lowest, highest);
            if (!taken) error = "not a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
            target = static_cast<Number>(taken.value_or(lowest));
        });
    }

    [[nodiscard]] bool given(const char* name) const { return app_.count(name) > 0; }

    void check() const {
        if (given("PICTURE") && options_.newPicture) fail("give a PICTURE or --new, not both");
        if (given("PICTURE")) checkPicture(options_.picture);
        if (given("--script")) requireReadable("script", options_.script);
        if (given("--theme")) requireReadable("theme", options_.theme, true);
        if (given("--theme")) requireReadable("theme's list of values", options_.theme + "/theme.ini");
        if (given("--password-file")) requireReadable("password file", options_.passwordFile);
        if (given("--language") && !isLanguageCode(options_.language)) {
            fail("--language " + options_.language + ": a language is a code such as en, de or pt_BR");
        }
        for (const char* name : {"--storage", "--trace", "--listen"}) {
            if (given(name) && app_.get_option(name)->as<std::string>().empty()) fail(std::string(name) + " is empty");
        }
        // An automatic display may become the browser.
        const bool browser = options_.display == DisplayKind::Browser || options_.display == DisplayKind::Automatic;
        for (const char* name : {"--port", "--listen", "--password-file", "--host-name"}) {
            if (given(name) && !browser) fail(std::string(name) + " is for the browser display alone");
        }
        if (given("--clock") && options_.display != DisplayKind::Headless)
            fail("--clock is for the headless display alone");
    }

    CLI::App app_{"", "colour"};
    Options options_;
};

}  // namespace

Options readOptions(int argc, const char* const* argv) { return CommandLine().read(argc, argv); }

}  // namespace host
