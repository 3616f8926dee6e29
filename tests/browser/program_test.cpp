#include <SDL.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>

#include "browser/chromium.h"

namespace {

namespace fs = std::filesystem;

/// The program itself with its panel in the browser, on a storage of its own.
class Program {
public:
    Program() {
        std::string directory = fs::temp_directory_path() / "colour-storage-XXXXXX";
        storage_ = mkdtemp(directory.data());
        std::array<int, 2> output{};
        if (pipe(output.data()) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(output[1], 1);
            execl(COLOUR_PROGRAM, "colour", "--display", "browser", "--panel", "760x1000@160,colour", "--storage",
                  storage_.c_str(), "--new", nullptr);
            _exit(127);
        }
        close(output[1]);
        for (char c = 0; read(output[0], &c, 1) == 1 && c != '\n';) address += c;
        close(output[0]);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() {
        end();
        fs::remove_all(storage_);
    }

    /// Asks it to end; its exit status.
    int end() {
        int status = -1;
        if (pid_ > 0) {
            kill(pid_, SIGTERM);
            waitpid(pid_, &status, 0);
        }
        pid_ = -1;
        return status;
    }

    [[nodiscard]] int pictures() const {
        int count = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(storage_)) {
            const std::string kind = entry.path().extension();
            count += entry.is_regular_file() && (kind == ".bmp" || kind == ".png") ? 1 : 0;
        }
        return count;
    }

    std::string address;

private:
    std::string storage_;
    pid_t pid_ = -1;
};

/// Whether any pixel of that line of the window is coloured ink.
bool inkAlong(const Chromium::Picture& picture, int y, int left, int right) {
    for (int x = left; x < right; ++x) {
        const auto* bytes = static_cast<const Uint8*>(picture->pixels) + y * picture->pitch + x * 3;
        if (bytes[0] > bytes[1] + 80) return true;
    }
    return false;
}

// The window is half as large as the panel. A new picture is drawn on in red; the toolbar's first button is "back".
TEST(BrowserProgram, APictureIsDrawnInTheBrowserAndSaved) {
    if (!Chromium::installed()) GTEST_SKIP() << "chromium is not installed: the program is not tested in a browser";
    Program program;
    ASSERT_THAT(program.address, testing::StartsWith("http://127.0.0.1:"));
    Chromium browser;
    browser.open(program.address, {380, 500});
    ASSERT_TRUE(browser.becomesTrue("document.getElementById('notice').hidden && !!document.querySelector('canvas')"));
    EXPECT_FALSE(inkAlong(browser.screenshot(), 250, 95, 285));

    browser.mouse("mousePressed", {100, 200});
    for (int step = 0; step <= 20; ++step) browser.mouse("mouseMoved", {100 + step * 8, 200 + step * 5});
    browser.mouse("mouseReleased", {260, 300});
    bool seen = false;
    for (int i = 0; i < 50 && !seen; ++i) seen = inkAlong(browser.screenshot(), 250, 95, 285);
    EXPECT_TRUE(seen);

    browser.mouse("mousePressed", {16, 14});
    browser.mouse("mouseReleased", {16, 14});
    for (int i = 0; i < 50 && program.pictures() == 0; ++i) usleep(100 * 1000);
    EXPECT_EQ(program.pictures(), 1);

    EXPECT_EQ(program.end(), 0);
    EXPECT_TRUE(browser.becomesTrue("document.body.innerText.includes('Colour has ended')"));
}

}  // namespace
