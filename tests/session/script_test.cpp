#include "platform/host/session/script.h"

#include <gtest/gtest.h>

#include <fstream>

#include "desk/world.h"
#include "platform/host/record/json.h"

namespace host::test {
namespace {

/// Plays a script in the world, where the explorer's answer installs the application's handler.
class Scripts : public testing::Test {
protected:
    int play(const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
        std::string error;
        const auto script = Script::load(path, stage(), error);
        if (script == nullptr) ADD_FAILURE() << error;
        testing::internal::CaptureStderr();
        const int status = world.loop.run(script.get());
        errors = testing::internal::GetCapturedStderr();
        return status;
    }
    Stage stage() {
        const auto enter = [this](const std::string& entry) {
            world.loop.enter({entry, [this] { world.loop.setHandler(World::application); }});
        };
        const auto create = [enter] { enter("create"); };
        const auto open = [enter](const std::string& picture) { enter("open " + jsonQuoted(picture)); };
        return {world.loop, world.modals, world.screen, world.panel, create, open};
    }

    const TemporaryFolder folder;
    const std::string path = folder.path() / "a.session";
    World world;
    std::string errors;
};

TEST_F(Scripts, PlayTheirCommandsInOrder) {
    world.begin();
    EXPECT_EQ(play("\xEF\xBB\xBF# a comment\r\n\r\n  \t\nopen \"/mnt/ext1/\\u00fc\\ud83d\\ude00\\/x.bmp\"# why\r\n"
                   "event -1 2147483647 -2147483648\n\tdown 1 2\nmove 3 4 #five\nreport 5 6\nup 7 -8\ntap 9 10"),
              0);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(world.traced(),
              "> open \"/mnt/ext1/ü😀/x.bmp\"\n<\n> event 23 0 0\n< 7\n> event -1 2147483647 -2147483648\n< 7\n"
              "> event 30 1 2\n< 7\n> event 31 3 4\n< 7\n> event 35 5 6\n< 7\n> event 29 7 -8\n< 7\n"
              "> event 30 9 10\n< 7\n> event 29 9 10\n< 7\n");
}

TEST_F(Scripts, LetTimePassOnlyWhileTheyWait) {
    const auto set = [this](const char* name, int after) {
        const auto nothing = [] {};
        world.loop.timers().set(name, nothing, world.clock.now() + Milliseconds{after});
    };
    world.on[30] = [&] { set("T", 100); };
    world.on[31] = [&] { set("at once", 0); };
    EXPECT_EQ(play("create\nwait 40\ndown 1 1\nwait 99\nmove 1 1\nup 1 1\nwait 0\nreport 1 1\nwait 1\nevent 43 0 "
                   "0\nquit\nbogus"),
              0);
    const std::string all = world.traced();
    EXPECT_EQ(all.substr(all.find("> event 30")),
              "> event 30 1 1\n< 7\n> event 31 1 1\n< 7\n> event 29 1 1\n< 7\n> timer \"at once\"\n<\n"
              "> event 35 1 1\n< 7\n> timer \"T\"\n<\n> event 43 0 0\n< 7\n");
    EXPECT_EQ(world.clock.now(), Instant{140});
}

class WrongLines : public Scripts, public testing::WithParamInterface<std::pair<std::string, std::string>> {};

TEST_P(WrongLines, EndTheRunAndAreNamed) {
    EXPECT_EQ(play("wait 1\n" + GetParam().first + "\nwait 1000\n"), 2);
    EXPECT_EQ(errors, path + ":2: " + GetParam().second + "\n");
    EXPECT_EQ(world.clock.now(), Instant{1});
}

INSTANTIATE_TEST_SUITE_P(All, WrongLines,
                         testing::ValuesIn(std::vector<std::pair<std::string, std::string>>{
                             {"bogus 1", "unknown command \"bogus\""},
                             {"\"tap\"", "unknown command \"\\\"tap\\\"\""},
                             {std::string("\xFF\0", 2), "unknown command \"\uFFFD\\u0000\""},
                             {"down 1 # 2", "an argument is missing (down X Y)"},
                             {"down 1 2 3", "too much on the line (down X Y)"},
                             {"quit now", "too much on the line (quit)"},
                             {"down +1 2", "expected a number, not \"+1\" (down X Y)"},
                             {"down 2147483648 2", "number out of range: \"2147483648\" (down X Y)"},
                             {"down \"1\" 2", "expected a number, not a string (down X Y)"},
                             {"open x.bmp", "expected a string in double quotes (open \"PATH\")"},
                             {"open \"x", "the string has no end (open \"PATH\")"},
                             {"open \"x\\", "unknown escape in the string (open \"PATH\")"},
                             {"open \"\\ud800\"", "a \\u escape in the string is no character (open \"PATH\")"},
                             {"open \"\\u0000\"", "a \\u escape in the string is no character (open \"PATH\")"},
                             {"open \"a\tb\"", "a control character in the string must be escaped (open \"PATH\")"},
                             {"open \"\xC3\"", "the string is not UTF-8 (open \"PATH\")"},
                             {"open \"a\"b", "too much on the line (open \"PATH\")"},
                             {"wait -1", "time does not run backwards"},
                             {"answer 3", "a dialog has the buttons 1 and 2"},
                             {"answer 1", "no dialog is open"},
                             {"type \"x\"", "no keyboard is open"},
                             {"font \"Sans,10\"", "no font selector is open"},
                             {"cancel", "nothing is open to cancel"}}));

TEST(StandardStreams, ThatAreClosedLeaveTheirPlaceToNoFile) {
    const TemporaryFolder folder;
    const std::string picture = folder.write("damaged.bmp", "BM");
    const std::string script = folder.write("open.session", "open \"" + picture + "\"\n");
    const std::string trace = folder / "trace";
    const std::string command = "'" COLOUR_PROGRAM "' --display headless --storage '" + folder.path().string() +
                                "' --script '" + script + "' --trace '" + trace + "' <&- >&- 2>&-";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_NE(contentOf(trace).find("LoadBitmap"), std::string::npos);
    EXPECT_EQ(contentOf(trace).find("colour: "), std::string::npos) << "a message";
}

}  // namespace
}  // namespace host::test
