#include "platform/host/desk/loop.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <fstream>
#include <future>
#include <thread>

#include "desk/world.h"
#include "platform/host/panel/headless_display.h"
#include "support/process.h"

namespace host::test {
namespace {

constexpr Rect kBox{50, 50, 100, 80};

TEST(Calls, WaitForTheOneInProgressAndTheExplorersLeaveNoTrace) {
    World world;
    world.start();
    world.on[30] = [&] {
        world.loop.enter({"open", [] {}});
        EXPECT_EQ(world.loop.setHandler(World::home), World::application);
    };
    world.loop.event(30, 1, 2);
    world.loop.event(29, 1, 2);
    EXPECT_EQ(world.traced(), "> event 30 1 2\n< 7\n> open\n<\n");
    EXPECT_EQ(world.toldHome, "23 29 ") << "repainted first";
}

TEST(ModalsOnTheLoop, TheCallbackComesWhenTheScreenIsPutBackAndRefreshed) {
    World world;
    world.start();
    world.screen.fill({60, 60, 1, 1}, 0x808080);
    world.openModal(kBox, {"dialog 2", [&] {
                               EXPECT_EQ(world.drawn(60, 60), 0x80);
                               EXPECT_EQ(world.shown(60, 60), 0x80);
                               EXPECT_EQ(world.modals.top(), nullptr);
                               world.openModal(kBox);
                           }});
    EXPECT_EQ(world.shown(60, 60), 0);
    EXPECT_EQ(world.display.textPlace, kBox);
    world.loop.event(30, 60, 60);
    EXPECT_EQ(world.traced(), "");
    world.loop.event(29, 60, 60);
    EXPECT_NE(world.modals.top(), nullptr) << "the one that the callback opened";
    world.loop.command([](Modal& modal) { return modal.cancel(), true; });
    EXPECT_EQ(world.shown(60, 60), 0x80);
    EXPECT_EQ(world.display.textPlace, std::nullopt);
    EXPECT_EQ(world.traced(), "> dialog 2\n<\n") << "a modal without a callback just goes";
}

TEST(ModalsOnTheLoop, WhatATimerDrawsLiesBelowThem) {
    World world;
    world.start();
    world.openModal(kBox);
    const auto draw = [] {
        EXPECT_EQ(World::current->drawn(60, 60), 0xFF) << "the modal is off the screen";
        World::current->screen.fill({0, 0, 300, 200}, 0x404040);
        World::current->openModal({100, 60, 100, 100});  // over the other's right part
    };
    world.loop.timers().set("draw", draw, Instant{50});
    world.runUntil(Instant{50});
    EXPECT_EQ(world.shown(60, 60), 0);
    EXPECT_EQ(world.shown(180, 100), 0);
    world.loop.event(29, 0, 0);
    EXPECT_EQ(world.shown(180, 100), 0x40);
    EXPECT_EQ(world.shown(120, 100), 0) << "the first still covers it";
    world.loop.event(29, 0, 0);
    EXPECT_EQ(world.shown(120, 100), 0x40);
    EXPECT_EQ(world.shown(60, 60), 0x40);
}

TEST(Pointer, IsClampedAndNumberedOncePerSample) {
    World world;
    world.start();
    const auto at = [&](int ms, Input::Kind kind, int x, int y) {
        world.clock.advanceTo(Instant{ms});
        world.loop.input({.kind = kind, .at = {x, y}});
    };
    using enum Input::Kind;
    at(0, PointerMove, 1, 1);  // no press yet
    at(1000, PointerDown, -5, 10);
    at(1001, PointerDown, 5, 10);  // a second finger
    at(1099, PointerMove, 20, 10);
    at(1100, PointerMove, 30, 10);
    at(1200, PointerMove, 50, 999);
    at(1900, PointerUp, 300, 200);
    at(1901, PointerMove, 60, 10);
    EXPECT_EQ(world.traced(),
              "> event 30 0 10\n< 7\n> event 31 20 10\n< 7\n> event 35 30 10\n< 7\n"
              "> event 35 50 199\n< 7\n> event 29 299 199\n< 7\n");
}

void nothing() {}
void withContext(void*) {}

TEST(TimersOnTheLoop, FireInOrderOfDueTimeThenOfSetting) {
    World world;
    world.begin();
    Timers& timers = world.loop.timers();
    for (const auto& [name, due] : {std::pair("late", 250), std::pair("first", 200), std::pair("never", 301),
                                    std::pair("replaced", 10), std::pair("second", 200), std::pair("replaced", 300)})
        timers.set(name, nothing, Instant{due});
    int one = 0, other = 0;
    timers.set("with context", withContext, &one, Instant{20});
    timers.set("with context", withContext, &other, Instant{30});
    timers.set("cancelled", nothing, Instant{40});
    timers.set("cancelled", nullptr, Instant{50});
    timers.set("with context", nullptr, &one, Instant{60});
    EXPECT_EQ(timers.nextDue(), Instant{30});
    world.runUntil(Instant{300});
    EXPECT_EQ(world.traced(),
              "> timer \"with context\"\n<\n> timer \"first\"\n<\n> timer \"second\"\n<\n> timer \"late\"\n<\n"
              "> timer \"replaced\"\n<\n");
}

/// A display that really waits.
struct Waiting {
    Clock clock;
    std::unique_ptr<Display> display = openHeadless();
    Screen screen{{300, 200}, PixelFormat::Grey8};
    Panel panel{screen.pixels(), *display, clock};
    Modals modals{screen, panel, *display};
    Trace trace;
    Loop loop{{300, 200}, {10, 10}, clock, *display, panel, modals, trace};
};

TEST(Signals, EndTheLoopBeforeAndWhileItWaits) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        {
            Waiting early;
            EXPECT_EQ(raise(SIGPIPE), 0) << "a broken pipe is no reason to end";
            kill(getpid(), signal);
            EXPECT_EQ(early.loop.run(nullptr), 0);
        }
        Waiting waiting;
        const auto sent = std::async(std::launch::async, [signal] {
            std::this_thread::sleep_for(Milliseconds{30});
            kill(getpid(), signal);
        });
        EXPECT_EQ(waiting.loop.run(nullptr), 0);
    }
}

/// The program is stuck while it reads a script that never comes; the first signal cannot reach the loop.
TEST(Signals, ASecondOneEndsAProgramThatHangs) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const TemporaryFolder folder;
        const std::string script = (folder / "script").string();
        ASSERT_EQ(mkfifo(script.c_str(), 0600), 0);
        Process program("'" COLOUR_PROGRAM "' --display headless --storage '" + folder.path().string() +
                        "' --script '" + script + "'");
        const std::ofstream opened(script);  // waits for the reader
        program.send(signal);
        program.send(signal);  // of the same closing terminal
        std::this_thread::sleep_for(EndSignals::kSameRequest + Milliseconds{50});
        EXPECT_TRUE(program.alive());
        const int status = program.end(signal);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
    }
}

TEST(Closing, EndsAlsoWhereEachModalOpensTheNext) {
    World world;
    world.start();
    world.cancelCallsBack = true;
    const std::function<void()> again = [&] { world.openModal(kBox, {"dialog 1", again}); };
    again();
    world.loop.input({.kind = Input::Kind::Close});
    EXPECT_EQ(world.loop.run(nullptr), 0);
}

/// Who closes the window in the middle of a picture must not lose it.
TEST(Closing, LeadsTheApplicationBackBeforeTheEnd) {
    for (const int tapsNeeded : {1, 2, 1000}) {  // the first may only close a popup; one application stays
        World world;
        int taps = 0;
        world.on[29] = [&] {
            if (++taps == tapsNeeded) world.loop.setHandler(World::home);
        };
        world.start();
        world.openModal({20, 20, 40, 40});
        world.loop.input({.kind = Input::Kind::Close});
        EXPECT_EQ(world.loop.run(nullptr), 0);
        EXPECT_EQ(world.modals.top(), nullptr);
        EXPECT_EQ(world.loop.atHome(), tapsNeeded < 1000);
    }
}

}  // namespace
}  // namespace host::test
