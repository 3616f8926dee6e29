#pragma once

#include <string>
#include <utility>
#include <vector>

#include "colour/codes.h"
#include "colour/controller.h"
#include "platform/host/toolkit.h"
#include "screen/pixels.h"
#include "support/program.h"

/// The application on a headless panel with a storage of its own, driven by events as the toolkit delivers them. One
/// for a test process.
class App {
public:
    explicit App(const host::Device& device = {}) {
        host::Options options;
        options.device = device;
        options.display = host::DisplayKind::Headless;
        options.language = "en";
        options.storage = (folder_.path() / "storage").string();
        options.trace = tracePath();
        host::makeToolkit(options);
        kit().loop.setHome([](int, int, int) { return 0; });
    }

    static host::Toolkit& kit() { return host::toolkit(); }

    void create() {
        kit().loop.enter({"create", [] { lumora::colour::Controller::Instance()->create(); }});
    }
    void open(const std::string& path) {
        kit().loop.enter({"open", [path] { lumora::colour::Controller::Instance()->open(path); }});
    }
    void event(int type, int x, int y) { kit().loop.event(type, x, y); }
    void down(int x, int y) { event(EventType::PointerDown, x, y); }
    void move(int x, int y) { event(EventType::PointerMove, x, y); }
    void up(int x, int y) { event(EventType::PointerUp, x, y); }
    void tap(int x, int y) { drag({{x, y}, {x, y}}); }
    /// Goes down at the first point, and up at the last one.
    void drag(std::vector<host::Point> points) {
        down(points.front().x, points.front().y);
        for (std::size_t i = 1; i + 1 < points.size(); ++i) move(points[i].x, points[i].y);
        up(points.back().x, points.back().y);
    }

    /// Writes the text of the open keyboard and presses OK.
    static void type(const char* text) {
        kit().loop.command([text](host::Modal& keyboard) { return keyboard.type(text); });
    }

    /// The trace lines since the last call.
    std::vector<std::string> calls() {
        const std::vector<std::string> lines = linesOf(tracePath());
        const auto seen = std::exchange(seen_, std::ssize(lines));
        return {lines.begin() + seen, lines.end()};
    }

    /// The file behind a device path.
    std::filesystem::path file(const std::string& devicePath) const { return kit().storage.resolve(devicePath); }

    static host::Framebuffer screenshot() { return kit().screen.pixels(); }

    /// 0xRRGGBB of a pixel on a colour screen.
    static int pixel(int x, int y) { return host::colourAt(kit().screen.pixels(), {x, y}); }

private:
    std::string tracePath() const { return (folder_.path() / "trace").string(); }

    TemporaryFolder folder_;
    std::ptrdiff_t seen_ = 0;
};
