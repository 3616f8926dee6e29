#pragma once

#include <cstdlib>
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

/// A black rectangle that closes on a pointer-up, calls back also when cancelled if it is to, and tells what reached
/// it.
class BlackModal final : public Modal {
public:
    BlackModal(Screen& screen, Rect area, Callback callback, bool callsOnCancel, std::string& told)
        : screen_(screen), area_(area), callback_(std::move(callback)), callsOnCancel_(callsOnCancel), told_(told) {}

    [[nodiscard]] Rect area() const override { return area_; }
    void paint() override { screen_.fill(area_, kBlack); }
    void pointer(int type, Point at) override {
        told_ += std::to_string(type) + "@" + std::to_string(at.x) + "," + std::to_string(at.y) + " ";
        if (type == 29) close(std::move(callback_));
    }
    [[nodiscard]] std::optional<Rect> textPlace() const override { return area_; }
    void cancel() override {
        if (callsOnCancel_) return close(callback_);
        close(std::nullopt);
    }

private:
    Screen& screen_;
    Rect area_;
    Callback callback_;
    bool callsOnCancel_;
    std::string& told_;
};

/// A small desk on a virtual clock, and an application that does to each event what the test says.
class World {
public:
    World() {
        current = this;
        std::string error;
        if (!trace.open(folder.path() / "trace", {}, false, error)) std::abort();
        loop.setHome(home);
    }

    /// The application's handler: records itself by the trace and does what `on` has for the event.
    static int application(int type, int, int) {
        const auto reaction = current->on.find(type);
        if (reaction != current->on.end()) reaction->second();
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
    void begin() { skipped = readAll().size(); }
    /// The trace since then, without the line ends' last.
    [[nodiscard]] std::string traced() const { return readAll().substr(skipped); }

    void openModal(Rect area, Callback callback = {"dialog 1", [] {}}) {
        modals.open(std::make_unique<BlackModal>(screen, area, std::move(callback), cancelCallsBack, toldModal));
    }
    [[nodiscard]] Rgb shown(int x, int y) const { return *panel.shown().at(x, y); }
    [[nodiscard]] Rgb drawn(int x, int y) const { return *screen.pixels().at(x, y); }

    inline static World* current = nullptr;
    std::map<int, std::function<void()>> on;
    std::string toldHome;
    std::string toldModal;
    bool cancelCallsBack = false;  ///< of the next modals

    Clock clock{1'700'000'000};
    RecordingDisplay display;
    Screen screen{{300, 200}, PixelFormat::Grey8};
    Panel panel{screen.pixels(), display, clock};
    Modals modals{screen, panel, display};
    Trace trace;
    Loop loop{screen.pixels().size(), {10, 10}, clock, display, panel, modals, trace};

private:
    [[nodiscard]] std::string readAll() const { return contentOf(folder.path() / "trace"); }
    TemporaryFolder folder;
    std::size_t skipped = 0;
};

}  // namespace host::test
