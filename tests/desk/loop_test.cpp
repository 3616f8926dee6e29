#include "platform/host/desk/loop.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <thread>

#include "desk/world.h"
#include "platform/host/panel/headless_display.h"

namespace host::test {
namespace {

constexpr Rect kBox{50, 50, 100, 80};

TEST(Handlers, TheExplorersReturnIsRepaintedWithoutATrace) {
    World world;
    world.start();
    world.on[30] = [&] { EXPECT_EQ(world.loop.setHandler(World::home), World::application); };
    world.loop.event(30, 1, 2);
    EXPECT_EQ(world.traced(), "> event 30 1 2\n< 7\n");
    EXPECT_EQ(world.toldHome, "23 ");
    EXPECT_TRUE(world.loop.atHome());
    world.loop.event(29, 1, 2);
    EXPECT_EQ(world.toldHome, "23 29 ");
}

TEST(ModalsOnTheLoop, TheCallbackComesWhenTheScreenIsPutBackAndRefreshed) {
    World world;
    world.start();
    world.screen.fill({60, 60, 1, 1}, 0x808080);
    const Callback callback{"dialog 2", [&] {
                                EXPECT_EQ(world.drawn(60, 60), 0x80);
                                EXPECT_EQ(world.shown(60, 60), 0x80);
                                EXPECT_EQ(world.modals.top(), nullptr);
                                world.openModal(kBox);
                            }};
    world.openModal(kBox, callback);
    EXPECT_EQ(world.shown(60, 60), 0);
    EXPECT_EQ(world.display.textPlace, kBox);

    world.loop.event(30, 60, 60);
    EXPECT_EQ(world.traced(), "");
    world.loop.event(29, 60, 60);
    EXPECT_EQ(world.traced(), "> dialog 2\n<\n");
    EXPECT_EQ(world.toldModal, "30@60,60 29@60,60 ");
    EXPECT_NE(world.modals.top(), nullptr) << "the one that the callback opened";

    world.loop.command([](Modal& modal) { return modal.cancel(), true; });
    EXPECT_EQ(world.shown(60, 60), 0x80);
    EXPECT_EQ(world.display.textPlace, std::nullopt);
    EXPECT_EQ(world.traced(), "> dialog 2\n<\n") << "a modal without a callback just goes";
}

TEST(ModalsOnTheLoop, OtherEventsAreDrawnBelowThem) {
    World world;
    world.start();
    world.openModal(kBox);
    world.on[43] = [&] {
        EXPECT_EQ(world.drawn(60, 60), 0xFF) << "the modal is off the screen";
        world.screen.fill({0, 0, 300, 200}, 0x404040);
        world.openModal({100, 60, 100, 100});  // over the other's right part
    };
    world.loop.event(43, 0, 0);
    EXPECT_EQ(world.traced(), "> event 43 0 0\n< 7\n");
    EXPECT_EQ(world.shown(60, 60), 0);
    EXPECT_EQ(world.shown(180, 100), 0);

    world.on.clear();
    world.loop.event(29, 0, 0);
    EXPECT_EQ(world.shown(180, 100), 0x40);
    EXPECT_EQ(world.shown(120, 100), 0) << "the first still covers it";
    world.loop.event(29, 0, 0);
    EXPECT_EQ(world.shown(120, 100), 0x40);
    EXPECT_EQ(world.shown(60, 60), 0x40);
}

TEST(ModalsOnTheLoop, ATimerDrawsBelowThem) {
    struct End final : Player {
        [[nodiscard]] Instant resumeAt() const override { return Instant{50}; }
        void play() override { World::current->loop.stop(0); }
    } end;
    World world;
    world.start();
    world.openModal(kBox);
    world.loop.timers().set(
        "draw",
        [] {
            World::current->screen.fill({0, 0, 300, 200}, 0x404040);
        },
        Instant{50});
    world.loop.run(&end);
    EXPECT_EQ(world.drawn(60, 60), 0) << "the modal covers it";
    world.loop.command([](Modal& modal) { return modal.cancel(), true; });
    EXPECT_EQ(world.shown(60, 60), 0x40) << "and has not lost it";
}

TEST(Calls, WaitForTheOneInProgress) {
    World world;
    world.start();
    bool inside = false;
    world.on[30] = [&] {
        inside = true;
        world.loop.enter({"open", [&] { EXPECT_FALSE(inside); }});
        inside = false;
    };
    world.loop.event(30, 1, 2);
    EXPECT_EQ(world.traced(), "> event 30 1 2\n< 7\n> open\n<\n");
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
    at(0, PointerUp, 1, 1);
    at(1000, PointerDown, -5, 10);
    at(1001, PointerDown, 5, 10);  // a second finger
    at(1099, PointerMove, 20, 10);
    at(1100, PointerMove, 30, 10);
    at(1150, PointerMove, 40, 10);
    at(1200, PointerMove, 50, 999);
    at(1900, PointerUp, 300, 200);
    at(1901, PointerMove, 60, 10);
    EXPECT_EQ(world.traced(),
              "> event 30 0 10\n< 7\n> event 31 20 10\n< 7\n> event 35 30 10\n< 7\n> event 31 40 10\n< 7\n"
              "> event 35 50 199\n< 7\n> event 29 299 199\n< 7\n");
}

int chained = 0;
void chain() {
    if (++chained > 3) return;
    World::current->loop.timers().set("chain", chain, World::current->loop.timersCountFrom() + Milliseconds{100});
}
void nothing() {}

TEST(TimersOnTheLoop, FireInOrderOfDueTimeAtTheirOwnInstants) {
    struct End final : Player {
        [[nodiscard]] Instant resumeAt() const override { return Instant{300}; }
        void play() override { World::current->loop.stop(0); }
    } end;
    World world;
    Timers& timers = world.loop.timers();
    world.begin();
    timers.set("late", nothing, Instant{250});
    timers.set("first of two", nothing, Instant{200});
    timers.set("never", nothing, Instant{301});
    timers.set("chain", chain, Instant{100});
    timers.set("replaced", nothing, Instant{10});
    timers.set("replaced", nothing, Instant{300});
    world.loop.run(&end);
    EXPECT_EQ(world.traced(),
              "> timer \"chain\"\n<\n> timer \"first of two\"\n<\n> timer \"chain\"\n<\n> timer \"late\"\n<\n"
              "> timer \"replaced\"\n<\n> timer \"chain\"\n<\n");
    EXPECT_EQ(world.clock.now(), Instant{300});
}

void withContext(void*) {}

TEST(TimersOnTheLoop, ANullCallbackCancelsTheTimerOfThatNameAndContext) {
    World world;
    Timers& timers = world.loop.timers();
    int one = 0;
    int other = 0;
    timers.set("plain", nothing, Instant{100});
    timers.set("with context", withContext, &one, Instant{200});
    timers.set("with context", withContext, &other, Instant{300});
    timers.set("plain", nullptr, Instant{100});
    EXPECT_EQ(timers.nextDue(), Instant{200});
    timers.set("with context", nullptr, &one, Instant{200});
    EXPECT_EQ(timers.nextDue(), Instant{300});
    timers.set("another", nullptr, &other, Instant{200});
    EXPECT_EQ(timers.nextDue(), Instant{300});
}

/// A real clock and a display that can really wait.
struct RealTime {
    Clock clock;
    std::unique_ptr<Display> display = openHeadless();
    Screen screen{{300, 200}, PixelFormat::Grey8};
    Panel panel{screen.pixels(), *display, clock};
    Modals modals{screen, panel, *display};
    Trace trace;
    Loop loop{{300, 200}, {10, 10}, clock, *display, panel, modals, trace};
};

TEST(RealTimeLoop, ASignalEndsItBeforeAndWhileItWaits) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        {
            RealTime early;
            EXPECT_EQ(raise(SIGPIPE), 0) << "a broken pipe is no reason to end";
            kill(getpid(), signal);
            EXPECT_EQ(early.loop.run(nullptr), 0);
        }
        RealTime waiting;
        std::thread sender([signal] {
            std::this_thread::sleep_for(Milliseconds{30});
            kill(getpid(), signal);
        });
        EXPECT_EQ(waiting.loop.run(nullptr), 0);
        sender.join();
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
            if (++taps == tapsNeeded) World::current->loop.setHandler(World::home);
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
