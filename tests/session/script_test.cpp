// Scripts are played, and traces written.
#include "platform/host/session/script.h"

#include <gmock/gmock.h>

#include <fstream>

#include "desk/world.h"
#include "platform/host/record/json.h"
#include "platform/host/record/trace.h"

namespace host::test {
namespace {

using namespace testing;

/// Plays a script in that world, where the explorer's answer installs the application's handler. Returns the status and
/// what is said.
std::pair<int, std::string> play(World& world, const std::string& text) {
    const auto open = [&world](const std::string& picture) {
        world.loop.enter({"open " + jsonQuoted(picture), [&world] { world.loop.setHandler(World::application); }});
    };
    std::string error;
    const auto script = Script::load(world.folder.write("a.session", text),
                                     {world.loop, world.modals, world.screen, world.panel, {}, open}, error);
    internal::CaptureStderr();
    const int status = world.loop.run(script.get());
    return {status, internal::GetCapturedStderr()};
}

TEST(Scripts, PlayTheirCommandsInOrder) {
    World world;
    world.begin();
    const auto ended =
        play(world,
             "\xEF\xBB\xBF# a comment\r\n\r\n  \t\nopen \"/mnt/ext1/\\u00fc\\ud83d\\ude00\\/x.bmp\"# why\r\n"
             "event -1 2147483647 -2147483648\n\tdown 1 2\nmove 3 4 #five\nreport 5 6\nup 7 -8\ntap 9 10\nquit\nbogus");
    EXPECT_EQ(ended, std::pair(0, std::string()));
    EXPECT_EQ(world.traced(),
              "> open \"/mnt/ext1/ü😀/x.bmp\"\n<\n> event 23 0 0\n< 7\n> event -1 2147483647 -2147483648\n< 7\n"
              "> event 30 1 2\n< 7\n> event 31 3 4\n< 7\n> event 35 5 6\n< 7\n> event 29 7 -8\n< 7\n"
              "> event 30 9 10\n< 7\n> event 29 9 10\n< 7\n");
}

TEST(Scripts, EndAtAWrongLineAndNameIt) {
    const std::pair<std::string, const char*> cases[]{
        {"bogus 1", "unknown command \"bogus\""},
        {"down 1 # 2", "an argument is missing (down X Y)"},
        {"down +1 2", "expected a number, not \"+1\" (down X Y)"},
        {"down 2147483648 2", "number out of range: \"2147483648\" (down X Y)"},
        {"open x.bmp", "expected a string in double quotes (open \"PATH\")"},
        {"open \"x", "the string has no end (open \"PATH\")"},
        {"open \"x\\", "unknown escape in the string (open \"PATH\")"},
        {"open \"\\ud800\"", "a \\u escape in the string is no character (open \"PATH\")"},
        {"open \"a\tb\"", "a control character in the string must be escaped (open \"PATH\")"},
        {"open \"\xC3\"", "the string is not UTF-8 (open \"PATH\")"},
        {"open \"a\"b", "too much on the line (open \"PATH\")"},
        {"wait -1", "time does not run backwards"},
        {"answer 3", "a dialog has the buttons 1 and 2"},
        {"answer 1", "no dialog is open"},
        {"type \"x\"", "no keyboard is open"},
        {"font \"Sans,10\"", "no font selector is open"},
        {"cancel", "nothing is open to cancel"}};
    for (const auto& [line, message] : cases) {
        World world;
        const std::string said = (world.folder / "a.session").string() + ":2: " + message + "\n";
        EXPECT_EQ(play(world, "wait 1\n" + line + "\nwait 1000\n"), std::pair(2, said));
        EXPECT_EQ(world.clock.now(), Instant{1});
    }
}

TEST(TraceStrings, EscapeOnlyWhatJsonAsksForAndAreReadBack) {
    EXPECT_EQ(jsonQuoted("/\"\\\b\f\n\r\t"), R"("/\"\\\b\f\n\r\t")");
    EXPECT_EQ(jsonQuoted(std::string("\x01\x1f\0\x7f", 4)), "\"\\u0001\\u001f\\u0000\x7f\"");
    EXPECT_EQ(jsonQuoted("\xE2\x82z\xF0\x9F\x98\""), "\"\uFFFDz\uFFFD\\\"\"") << "broken UTF-8";
}

TEST(TraceFile, ThatCannotBeWrittenIsToldOnce) {
    Trace trace;
    std::string error;
    EXPECT_FALSE(trace.open("/nowhere/trace", {}, false, error));
    EXPECT_EQ(error, "cannot write the trace '/nowhere/trace': No such file or directory");

    internal::CaptureStderr();
    EXPECT_TRUE(trace.open("/dev/full", {}, false, error));
    trace.call("ClearScreen");
    EXPECT_EQ(internal::GetCapturedStderr(), "colour: the trace '/dev/full' ends here: No space left on device\n");
}

TEST(StandardStreams, ThatAreClosedLeaveTheirPlaceToNoFile) {
    const TemporaryFolder folder;
    const std::string picture = folder.write("damaged.bmp", "BM");
    folder.write("open.session", "open \"" + picture + "\"\n");
    const std::string command = "cd '" + folder.path().string() + "'; '" COLOUR_PROGRAM "' --display headless " +
                                "--storage . --script open.session --trace trace <&- >&- 2>&-";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_THAT(contentOf(folder / "trace"), AllOf(HasSubstr("LoadBitmap"), Not(HasSubstr("colour: "))));
}

}  // namespace
}  // namespace host::test
