#include "platform/host/session/script.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/host/session/script_line.h"
#include "platform/host/touch/pointer_event.h"

namespace host {

namespace {

constexpr int kWrongScript = 2;

/// One instruction of a script. `play` returns what is wrong with it at this point; empty when nothing is.
struct Command {
    std::string_view name;
    std::string_view usage;
    std::string (*play)(const Stage& stage, const ScriptArguments& arguments);
};

template <int Type>
std::string pointer(const Stage& stage, const ScriptArguments& arguments) {
    stage.loop.event(Type, arguments.numbers[0], arguments.numbers[1]);
    return {};
}

std::string tap(const Stage& stage, const ScriptArguments& arguments) {
    pointer<kPointerDown>(stage, arguments);
    return pointer<kPointerUp>(stage, arguments);
}

std::string event(const Stage& stage, const ScriptArguments& arguments) {
    stage.loop.event(arguments.numbers[0], arguments.numbers[1], arguments.numbers[2]);
    return {};
}

std::string create(const Stage& stage, const ScriptArguments&) {
    if (!stage.loop.atHome()) return "a picture is being edited; the explorer cannot ask for a new one";
    stage.create();
    return {};
}

std::string open(const Stage& stage, const ScriptArguments& arguments) {
    if (!stage.loop.atHome()) return "a picture is being edited; the explorer cannot open another";
    stage.open(arguments.text);
    return {};
}

std::string answer(const Stage& stage, const ScriptArguments& arguments) {
    const int button = arguments.numbers[0];
    if (button != 1 && button != 2) return "a dialog has the buttons 1 and 2";
    if (stage.loop.command([&](Modal& modal) { return modal.answer(button); })) return {};
    return "no dialog is open";
}

std::string type(const Stage& stage, const ScriptArguments& arguments) {
    if (stage.loop.command([&](Modal& modal) { return modal.type(arguments.text); })) return {};
    return "no keyboard is open";
}

std::string font(const Stage& stage, const ScriptArguments& arguments) {
    if (stage.loop.command([&](Modal& modal) { return modal.chooseFont(arguments.text); })) return {};
    return "no font selector is open";
}

std::string cancel(const Stage& stage, const ScriptArguments&) {
    const bool cancelled = stage.loop.command([](Modal& modal) {
        modal.cancel();
        return true;
    });
    return cancelled ? "" : "nothing is open to cancel";
}

std::string screenshot(const Stage& stage, const ScriptArguments& arguments) {
    std::string error;
    stage.loop.settle();
    return writePng(arguments.text, stage.screen.pixels(), error) ? "" : error;
}

std::string panel(const Stage& stage, const ScriptArguments& arguments) {
    std::string error;
    stage.loop.settle();
    return writePng(arguments.text, stage.panel.shown(), error) ? "" : error;
}

std::string quit(const Stage& stage, const ScriptArguments&) {
    stage.loop.stop(0);
    return {};
}

/// `wait` is the script's own: it ends the playing for a while.
constexpr std::string_view kWait = "wait";

constexpr std::array kCommands{
    Command{"create", "", create},
    Command{"open", "\"PATH\"", open},
    Command{"event", "TYPE PAR1 PAR2", event},
    Command{"down", "X Y", pointer<kPointerDown>},
    Command{"move", "X Y", pointer<kPointerMove>},
    Command{"up", "X Y", pointer<kPointerUp>},
    Command{"report", "X Y", pointer<kPointerReport>},
    Command{"tap", "X Y", tap},
    Command{"answer", "N", answer},
    Command{"type", "\"TEXT\"", type},
    Command{"cancel", "", cancel},
    Command{"font", "\"NAME,SIZE\"", font},
    Command{kWait, "MS", nullptr},
    Command{"screenshot", "\"FILE.png\"", screenshot},
    Command{"panel", "\"FILE.png\"", panel},
    Command{"quit", "", quit},
};

/// How a command is written, behind a message about one that is not.
std::string asIn(const Command& command) {
    std::string example = " (";
    example += command.name;
    if (!command.usage.empty()) example += ' ';
    example += command.usage;
    return example + ')';
}

}  // namespace

std::unique_ptr<Script> Script::load(const std::string& path, Stage stage, std::string& error) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    // Also an empty file makes `<<` fail; only the file's own state tells whether it could be read.
    if (file && file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
    if (!file.is_open() || file.bad()) {
        error = "cannot read the script '" + path + "': " + std::strerror(errno);
        return nullptr;
    }
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    std::string lines = text.str();
    if (lines.starts_with(kByteOrderMark)) lines.erase(0, kByteOrderMark.size());
    return std::unique_ptr<Script>(new Script(path, std::istringstream(std::move(lines)), std::move(stage)));
}

Script::Script(std::string path, std::istringstream lines, Stage stage)
    : path_(std::move(path)), lines_(std::move(lines)), stage_(std::move(stage)) {}

void Script::play() {
    waiting_ = false;
    while (!waiting_ && !stage_.loop.stopped()) {
        std::string line;
        if (!std::getline(lines_, line)) {
            stage_.loop.stop(0);
            return;
        }
        ++lineNumber_;
        if (line.ends_with('\r')) line.pop_back();
        const std::string error = playLine(line);
        if (error.empty()) continue;
        std::fprintf(stderr, "%s:%d: %s\n", path_.c_str(), lineNumber_, error.c_str());
        stage_.loop.stop(kWrongScript);
    }
}

std::string Script::playLine(std::string_view line) {
    const std::string_view name = takeWord(line);
    if (name.empty() && (line.empty() || line.front() == '#')) return {};
    const auto* const command =
        std::find_if(kCommands.begin(), kCommands.end(), [&](const Command& each) { return each.name == name; });
    if (command == kCommands.end()) return "unknown command " + shownPiece(name.empty() ? line : name);
    std::string error;
    const std::optional<ScriptArguments> arguments = readArguments(line, command->usage, error);
    if (!arguments) return error + asIn(*command);
    if (command->play == nullptr) return wait(arguments->numbers[0]);
    return command->play(stage_, *arguments);
}

std::string Script::wait(int milliseconds) {
    if (milliseconds < 0) return "time does not run backwards";
    resumeAt_ = stage_.loop.clock().now() + Milliseconds{milliseconds};
    waiting_ = true;
    return {};
}

}  // namespace host
