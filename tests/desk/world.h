#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/host/desk/loop.h"
#include "platform/host/screen/screen.h"
#include "support/program.h"
#include "support/recording_display.h"

namespace host::test {

/// A small desk on a virtual clock, and an application that does to each event what the test says.
class World final : public Player {
public:
    World() {
        current = this;
        std::string error;
        EXPECT_TRUE(trace.open(folder / "trace", {}, false, error)) << error;
        loop.setHome(home);
    }

    /// The application's handler: records itself by the trace and does what `on` has for the event.
    static int application(int type, int, int) {
        if (const std::function<void()>& reaction = current->on[type]) reaction();
        return 7;
    }
    static int home(int type, int, int) {
        current->toldHome += std::to_string(type) + " ";
        return 0;
    }

    void start() {
        loop.enter({"create", [this] { loop.setHandler(application); }});
        begin();
    }
    /// Forgets the trace so far.
    void begin() { skipped_ = contentOf(folder / "trace").size(); }
    /// The trace since then.
    [[nodiscard]] std::string traced() const { return contentOf(folder / "trace").substr(skipped_); }

    /// Runs the loop until that instant, and ends it.
    void runUntil(Instant end) {
        end_ = end;
        loop.run(this);
    }
    [[nodiscard]] Instant resumeAt() const override { return end_; }
    void play() override { loop.stop(0); }

    void openModal(Rect area, Callback callback = {"dialog 1", [] {}}) {
        modals.open(std::make_unique<BlackModal>(*this, area, std::move(callback)));
    }
    [[nodiscard]] Rgb shown(int x, int y) const { return *panel.shown().at(x, y); }
    [[nodiscard]] Rgb drawn(int x, int y) const { return *screen.pixels().at(x, y); }

    inline static World* current = nullptr;
    std::map<int, std::function<void()>> on;
    std::string toldHome;
    bool cancelCallsBack = false;

    TemporaryFolder folder;
    Clock clock{1'700'000'000};
    RecordingDisplay display;
    Screen screen{{300, 200}, PixelFormat::Grey8};
    Panel panel{screen.pixels(), display, clock};
    Modals modals{screen, panel, display};
    Trace trace;
    Loop loop{screen.pixels().size(), {10, 10}, clock, display, panel, modals, trace};

private:
    /// A black rectangle that closes on a pointer-up.
    class BlackModal final : public Modal {
    public:
        BlackModal(World& world, Rect area, Callback callback)
            : world_(world), area_(area), callback_(std::move(callback)) {}
        [[nodiscard]] Rect area() const override { return area_; }
        [[nodiscard]] std::optional<Rect> textPlace() const override { return area_; }
        void paint() override { world_.screen.fill(area_, kBlack); }
        void pointer(int type, Point /*at*/) override {
            if (type == 29) close(callback_);
        }
        void cancel() override { close(world_.cancelCallsBack ? std::optional(callback_) : std::nullopt); }

    private:
        World& world_;
        Rect area_;
        Callback callback_;
    };

    std::size_t skipped_ = 0;
    Instant end_{};
};

}  // namespace host::test
