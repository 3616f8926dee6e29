// Every call to the disk fails, once or from then on: neither the picture nor the page is lost.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>

#include "files/faulty_calls.h"
#include "files/scratch.h"
#include "support/app.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kPath = "/mnt/ext1/My pictures/a.bmp";
constexpr int kForever = 1 << 30;

enum Outcome { kSafe, kLost, kNotReached };

struct FailingDisk : testing::Test {
    FailingDisk() {
        setenv("XDG_STATE_HOME", elsewhere.path().c_str(), 1);
        app.open(kPath);
        draw(100);
        leave();
        content = contentOf(app.file(kPath));
        before = pixelsOf(app.file(kPath));
    }

    void draw(int x) { app.tap(x, 400); }
    void leave() { app.tap(32, 28); }

    static scratch::Bytes pixelsOf(const fs::path& file) {
        std::string error;
        const host::BitmapPtr picture = host::loadPicture(file, error);
        return picture != nullptr ? scratch::pixels(*picture) : scratch::Bytes{};
    }
    /// The last rows of the screen, as many as the picture has.
    scratch::Bytes page() const {
        const host::Framebuffer& screen = App::kit().screen.pixels();
        const std::size_t all = screen.stride() * static_cast<std::size_t>(screen.size().h);
        return {screen.at(0, 0) + (all - before.size()), screen.at(0, 0) + all};
    }

    /// A person opens the picture, draws and leaves it; then the disk is well again.
    Outcome play(const scratch::Fault& fault) {
        const fs::path file = app.file(kPath);
        host::Keeper& keeper = App::kit().keeper;
        scratch::fault = fault;
        scratch::Bytes drawn;
        std::string error;
        const auto against = keeper.prepare(kPath, error);
        if (!against || !against->button.empty()) {
            app.open(kPath);
            draw(300);
            drawn = page();
            leave();
        }
        const bool reached = scratch::fault.after < 0;
        scratch::fault = {};
        const scratch::Bytes found = pixelsOf(file);
        if (found != before && found != drawn) return kLost;
        // A signal is no failure.
        if (fault.error == EINTR && found != drawn) return kLost;
        if (found != drawn && !drawn.empty()) {
            const host::Notice notice = keeper.takeNotice();
            if (notice.act == nullptr) return kLost;
            notice.act();
            if (pixelsOf(file) != drawn || !keeper.finish()) return kLost;
        }
        return reached ? kSafe : kNotReached;
    }

    /// The same in a process of its own, with the folders as they were.
    int outcome(const scratch::Fault& fault) {
        for (const char* folder : {"/mnt/ext1/My pictures", "/mnt/ext1/.recovery"})
            for (const auto& entry : fs::directory_iterator(app.file(folder))) fs::remove(entry);
        std::ofstream(app.file(kPath), std::ios::binary) << content;
        const pid_t child = fork();
        if (child == 0) {
            std::freopen("/dev/null", "w", stderr);
            _exit(play(fault));
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    TemporaryFolder elsewhere;
    App app{{.width = 600, .height = 800, .dpi = 167}};
    std::string content;
    scratch::Bytes before;
};

TEST_F(FailingDisk, LosesNothing) {
    for (const int error : {ENOSPC, EIO, EROFS, EINTR})
        for (const int times : {1, kForever}) {
            // A call that is always interrupted never ends.
            if (error == EINTR && times > 1) continue;
            int result = kSafe;
            int calls = 0;
            for (; result == kSafe; ++calls) result = outcome({"any", error, calls, times});
            EXPECT_EQ(result, kNotReached) << "error " << error << " of call " << calls - 1 << ", times " << times;
            EXPECT_GT(calls, 15) << "the faults do not reach the program";
        }
}

}  // namespace
