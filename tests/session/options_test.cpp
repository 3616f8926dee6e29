#include "platform/host/options/options.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/program.h"

namespace {

using namespace host;

struct CommandLineOptions : testing::Test {
    CommandLineOptions() {
        for (const char* name : {"photo.JPeG", "plain", "theme.ini"}) folder.write(name, "any");
        std::filesystem::current_path(folder.path());
    }
    ~CommandLineOptions() override { std::filesystem::current_path("/"); }

    /// Arguments separated by spaces.
    static Options read(const std::string& arguments) {
        std::istringstream words("colour " + arguments);
        const std::vector<std::string> all{std::istream_iterator<std::string>(words), {}};
        std::vector<const char*> pointers;
        for (const std::string& word : all) pointers.push_back(word.c_str());
        return readOptions(static_cast<int>(pointers.size()), pointers.data());
    }

    const TemporaryFolder folder;
};

TEST_F(CommandLineOptions, AreAllTaken) {
    const Options options = read(
        "photo.JPeG --display=browser --port 65535 --listen :: --password-file plain --host-name a --host-name b "
        "--storage s --theme . --language pt_BR --script plain --trace t --waveforms --log 2");
    const std::vector<std::string> texts{options.picture, options.listen,   options.passwordFile, options.storage,
                                         options.theme,   options.language, options.script,       options.trace};
    EXPECT_EQ(texts, (std::vector<std::string>{"photo.JPeG", "::", "plain", "s", ".", "pt_BR", "plain", "t"}));
    EXPECT_EQ(options.hostNames, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(options.display, DisplayKind::Browser);
    EXPECT_EQ(std::pair(options.port, options.logLevel), std::pair(65'535, 2));
    EXPECT_TRUE(options.waveforms);
    EXPECT_TRUE(read("--new").newPicture);
    EXPECT_EQ(read("--clock 5000000000 --waveforms --display headless").clock, 5'000'000'000);
    EXPECT_EQ(read("--port 1").display, DisplayKind::Automatic) << "which may become the browser";
    EXPECT_EQ(read("--panel 1404x217@600").device.height, 217) << "one row to draw on";
}

TEST_F(CommandLineOptions, ThatAreWrongEndTheProgramWithOneLine) {
    const std::pair<const char*, std::string> cases[]{
        {"--bogus", ".*--bogus"},
        {"photo.JPeG --new", "give a PICTURE or --new, not both"},
        {"plain", "'plain' is not a picture: .*"},
        {"gone.png", "cannot read the picture 'gone.png': no such file or folder"},
        {"--panel 600x10001@167", "--panel .*sides from 200 to 10000 pixels.*"},
        {"--panel 600x800@167,grey,scale=2,colour", "--panel .*each once.*'colour'"},
        {"--panel 600x800@167,platform=x", "--panel .*platform.*"},
        {"--panel 1404x216@600", "--panel .*its toolbar would be higher than the panel"},
        {"--panel 200x4000@1200", "--panel .*its .back. button would be off the screen"},
        {"--panel 8200x8300@300", "--panel .*more pixels than a picture can be saved with"},
        {"--port 80 --display window", "--port is for the browser display alone"},
        {"--clock 7", "--clock is for the headless display alone"},
        {"--display wall", "--display wall: .*"},
        {"--port 010x", "--port 010x: .*"},
        {"--script .", "cannot read the script '.': a folder, not a file"},
        {"--theme plain", "cannot read the theme 'plain': not a folder"},
        {"--language d3", "--language d3: .*"},
    };
    for (const auto& [arguments, message] : cases)
        EXPECT_EXIT(static_cast<void>(read(arguments)), testing::ExitedWithCode(2), "^colour: " + message + "\n$");
}

}  // namespace
