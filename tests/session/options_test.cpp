#include "platform/host/session/options.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace host {
namespace {

class CommandLineOptions : public testing::Test {
protected:
    CommandLineOptions() {
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "picture.BMP") << "any";
        std::ofstream(folder / "plain") << "any";
        std::filesystem::current_path(folder);
    }
    ~CommandLineOptions() override {
        std::filesystem::current_path("/");
        std::filesystem::remove_all(folder);
    }
    static Options read(const std::vector<const char*>& arguments) {
        std::vector<const char*> all{"colour"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return readOptions(static_cast<int>(all.size()), all.data());
    }
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("options" + std::to_string(getpid()));
};

TEST_F(CommandLineOptions, DescribeThePanel) {
    const Device standard = read({}).device;
    EXPECT_EQ(standard.width, 1404);
    EXPECT_TRUE(standard.colour);
    const Device chosen = read({"--panel", "10000x200@50,scale=0.25,grey,platform=16"}).device;
    EXPECT_EQ(chosen.width, 10'000);
    EXPECT_EQ(chosen.height, 200);
    EXPECT_EQ(chosen.dpi, 50);
    EXPECT_EQ(chosen.scale, 0.25);
    EXPECT_FALSE(chosen.colour);
    EXPECT_EQ(chosen.platform, 16);
}

TEST_F(CommandLineOptions, AreAllTaken) {
    const Options options = read({"picture.BMP",
                                  "--display=headless",
                                  "--port",
                                  "65535",
                                  "--listen",
                                  "::",
                                  "--password-file",
                                  "plain",
                                  "--storage",
                                  "s",
                                  "--theme",
                                  ".",
                                  "--language",
                                  "pt_BR",
                                  "--script",
                                  "plain",
                                  "--trace",
                                  "t",
                                  "--clock",
                                  "5000000000",
                                  "--waveforms",
                                  "--log",
                                  "2"});
    EXPECT_EQ(options.picture, "picture.BMP");
    EXPECT_EQ(options.display, DisplayKind::Headless);
    EXPECT_EQ(options.port, 65'535);
    EXPECT_EQ(options.listen, "::");
    EXPECT_EQ(options.passwordFile, "plain");
    EXPECT_EQ(options.storage, "s");
    EXPECT_EQ(options.theme, ".");
    EXPECT_EQ(options.language, "pt_BR");
    EXPECT_EQ(options.script, "plain");
    EXPECT_EQ(options.trace, "t");
    EXPECT_EQ(options.clock, 5'000'000'000);
    EXPECT_TRUE(options.waveforms);
    EXPECT_EQ(options.logLevel, 2);
    EXPECT_TRUE(read({"--new"}).newPicture);
}

TEST_F(CommandLineOptions, ThatAreWrongEndTheProgramWithOneLine) {
    const std::vector<std::pair<std::vector<const char*>, std::string>> cases{
        {{"--bogus"}, ".*--bogus"},
        {{"picture.BMP", "second.bmp"}, ".*second.bmp"},
        {{"picture.BMP", "--new"}, "give a PICTURE or --new, not both"},
        {{"photo.JPeG"}, "'photo.JPeG' is not opened: a JPEG picture cannot be saved without loss"},
        {{"plain"}, "'plain' is not a picture: .*"},
        {{"gone.png"}, "cannot read the picture 'gone.png': no such file or folder"},
        {{"--panel", "199x800@167"}, "--panel 199x800@167: .*"},
        {{"--panel", "600x10001@167"}, "--panel .*sides from 200 to 10000 pixels"},
        {{"--panel", "600x800"}, "--panel .*"},
        {{"--panel", "600x800@1201"}, "--panel .*50 to 1200.*"},
        {{"--panel", "600x800@167 "}, "--panel .*"},
        {{"--panel", "0x258x800@167"}, "--panel .*"},
        {{"--panel", "600x800@167,grey,"}, "--panel .*"},
        {{"--panel", "600x800@167,blue"}, "--panel .*'blue'"},
        {{"--panel", "600x800@167,scale=nan"}, "--panel .*0.25 to 8"},
        {{"--panel", "600x800@167,scale=8.01"}, "--panel .*0.25 to 8"},
        {{"--panel", "600x800@167,platform=x"}, "--panel .*platform.*"},
        {{"--display", "wall"}, "--display wall: .*"},
        {{"--port", "0"}, "--port 0: .*"},
        {{"--port", "010x"}, "--port 010x: .*"},
        {{"--port"}, "--port.*"},
        {{"--clock", "-1"}, "--clock.*"},
        {{"--log", "99999999999999999999"}, "--log .*"},
        {{"--listen", "0.0.0.0"}, "--listen needs a password: add --password-file FILE"},
        {{"--password-file", "gone"}, "cannot read the password file 'gone': .*"},
        {{"--script", "gone"}, "cannot read the script 'gone': .*"},
        {{"--script", "."}, "cannot read the script '.': a folder, not a file"},
        {{"--theme", "plain"}, "cannot read the theme 'plain': not a folder"},
        {{"--language", "d3"}, "--language d3: .*"},
    };
    for (const auto& [arguments, message] : cases) {
        EXPECT_EXIT(static_cast<void>(read(arguments)), testing::ExitedWithCode(2), "^colour: " + message + "\n$");
    }
}

TEST_F(CommandLineOptions, AnswerHelpAndVersion) {
    const auto printed = [&](const char* option) {
        EXPECT_EXIT(
            {
                // Death tests match standard error.
                dup2(STDERR_FILENO, STDOUT_FILENO);
                static_cast<void>(read({option}));
            },
            testing::ExitedWithCode(0),
            std::string(option) == "--version" ? "^Colour 1.0.0\n$" : "--password-file FILE");
    };
    printed("--version");
    printed("--help");
    printed("-h");
}

}  // namespace
}  // namespace host
