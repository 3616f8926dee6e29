#include <gmock/gmock.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "support/process.h"
#include "support/program.h"

namespace {

std::string often(const std::string& lines, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += lines;
    return all;
}

constexpr std::size_t kPixels = 54;  // where they begin in a picture's file

/// Whoever is drawing when the window system dies finds the picture saved.
TEST(LostWindow, EndsTheProgramWithThePictureSaved) {
    const std::string typing = "tap 738 50\ndown 440 640\nup 1000 790\n";
    for (const std::string& meanwhile :
         {std::string("wait 60000\n"), "down 200 900\n" + often("move 300 950\nwait 1\n", 20000),
          typing + "wait 60000\n"}) {
        const TemporaryFolder folder;
        Process server("Xvfb -displayfd 1 -screen 0 1000x1000x24 -nolisten tcp 2>/dev/null");
        const std::string name = server.line();
        ASSERT_NE(name, "") << "Xvfb cannot be started";
        const std::string drawing = "create\ndown 200 700\nmove 600 750\nup 700 650\nwait 1\n";
        const std::string ready = folder / "ready.png";
        const auto script = folder.write("script", drawing + "screenshot \"" + ready + "\"\n" + meanwhile);
        Process program("env SDL_VIDEODRIVER=x11 DISPLAY=:" + name +
                        " timeout 20 '" COLOUR_PROGRAM "' --display window" + " --storage '" + folder.path().string() +
                        "' --script '" + script.string() + "' 2>'" + (folder / "errors").string() + "'");
        while (program.alive() && !std::filesystem::exists(ready))
            std::this_thread::sleep_for(std::chrono::milliseconds{20});
        std::this_thread::sleep_for(std::chrono::milliseconds{300});
        server.end(SIGKILL);
        const int status = program.end(0);
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 1);
        EXPECT_THAT(contentOf(folder / "errors"), testing::EndsWith("colour: the display has gone\n"));
        std::string saved;
        for (const auto& file : std::filesystem::directory_iterator(folder / "My pictures")) saved = contentOf(file);
        EXPECT_NE(saved.find_first_not_of('\xFF', kPixels), std::string::npos) << "the stroke is in the picture";
    }
}

}  // namespace
