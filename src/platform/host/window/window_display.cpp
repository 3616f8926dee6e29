#include "platform/host/window/window_display.h"

#include <SDL.h>
#include <SDL_image.h>

#include <algorithm>
#include <array>
#include <vector>

#include "platform/host/screen/area_scaler.h"
#include "platform/host/screen/surface.h"
#include "platform/host/window/connection.h"
#include "platform/host/window/wet_line.h"
#include "platform/host/window/window_input.h"
#include "platform/host/window/window_view.h"

namespace host {

namespace {

// What a window manager's frame and title bar take, at most, in points.
constexpr Size kFrameRoom = {16, 56};
constexpr Size kSmallestWindow = {160, 200};
constexpr Uint8 kBorderGrey = 0x80;
/// How long that may wait which does not come over the window system's connection: an input method's text, a held key.
constexpr std::chrono::milliseconds kAskingPace{20};
/// Input that does not cease holds up no picture for longer: one of a screen's sixty in a second.
constexpr std::chrono::milliseconds kLongestUnseen{16};

struct CloseWindow {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
};
using Window = std::unique_ptr<SDL_Window, CloseWindow>;

SDL_Rect sdlRect(Rect r) { return {r.x, r.y, r.w, r.h}; }

Size windowSize(SDL_Window* window) {
    Size size;
    SDL_GetWindowSize(window, &size.w, &size.h);
    return {std::max(size.w, 1), std::max(size.h, 1)};
}

bool takesRows(const SDL_Surface& surface) {
    return surface.format->format == SDL_PIXELFORMAT_RGB888 || surface.format->format == SDL_PIXELFORMAT_ARGB8888;
}

/// SDL's video part, for as long as the window lives.
class Video {
public:
    Video() : ok_(SDL_InitSubSystem(SDL_INIT_VIDEO) == 0) {}
    Video(const Video&) = delete;
    Video& operator=(const Video&) = delete;
    ~Video() {
        if (ok_) SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }
    void abandon() { ok_ = false; }
    [[nodiscard]] bool ok() const { return ok_; }

private:
    bool ok_;
};

class WindowDisplay final : public Display {
public:
    explicit WindowDisplay(Size panel) : panel_(panel), view_(panel, panel), scaler_(panel, panel) {}

    ~WindowDisplay() override {
        if (!connection_.lost()) return;
        // Closing what the other end has taken with it would wait for an answer for ever.
        static_cast<void>(window_.release());
        video_.abandon();
    }

    [[nodiscard]] bool hasScreen() const { return video_.ok(); }

    /// False, with SDL's reason, where the screen gives no window that can be painted.
    bool open(const std::string& title, const std::filesystem::path& icon) {
        SDL_StopTextInput();
        SDL_Rect room{0, 0, panel_.w, panel_.h};
        SDL_GetDisplayUsableBounds(0, &room);
        const Size inner = {std::max(room.w - kFrameRoom.w, 1), std::max(room.h - kFrameRoom.h, 1)};
        const Size size = WindowView::fit(panel_, inner);
        window_.reset(SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, size.w, size.h,
                                       SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI));
        if (!window_) return false;
        if (const SurfacePtr picture{IMG_Load(icon.c_str())}) SDL_SetWindowIcon(window_.get(), picture.get());
        SDL_SetWindowMinimumSize(window_.get(), kSmallestWindow.w, kSmallestWindow.h);
        const SDL_Surface* surface = SDL_GetWindowSurface(window_.get());
        if (surface == nullptr) return false;
        shrinkToPixels(*surface, size, inner);
        // The empty panel stands there while the rest starts.
        show();
        connection_.watch(window_.get());
        return true;
    }

    void present(const Framebuffer& shown, Rect area) override {
        shown_ = &shown;
        showAgain(area);
    }

    void wetInk(const WetInk* ink) override {
        if (shown_ == nullptr || (ink == nullptr && wet_.area().empty())) return;
        // What it has covered is shown again, without it.
        showAgain(wet_.area());
        wet_.follow(ink, *shown_);
        unseenInk_ = true;
    }

    void flush() override {
        if (!connection_.lost()) show();
    }

    std::optional<Input> wait(std::optional<std::chrono::milliseconds> timeout) override {
        const Steady::time_point begin = Steady::now();
        for (;;) {
            if (connection_.lost()) return Input{.kind = Input::Kind::Lost};
            if (Steady::now() - shownAt_ >= kLongestUnseen) show();
            if (std::optional<Input> input = input_.next()) return input;
            SDL_Event event;
            if (take(event)) {
                if (event.type == SDL_WINDOWEVENT) noteWindow(event.window);
                // A lost connection may look like a wish to quit.
                if (event.type == SDL_QUIT && connection_.lost()) continue;
                input_.take(event, view_, windowSize(window_.get()));
                continue;
            }
            // All that has been done is drawn: it is shown together, however fast it came. Meanwhile more may have
            // come.
            const bool shown = show();
            const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Steady::now() - begin);
            if (timeout && passed >= *timeout) return std::nullopt;
            if (shown) continue;
            std::optional<std::chrono::milliseconds> nap;
            if (timeout) nap = *timeout - passed;
            if (input_.typing() || !connection_.known()) nap = std::min(nap.value_or(kAskingPace), kAskingPace);
            if (connection_.wait(nap)) return std::nullopt;
        }
    }

    void wake() override { connection_.wake(); }

    void setTextInput(bool on, Rect near) override {
        input_.setTyping(on);
        if (connection_.lost()) return;
        if (!on) {
            SDL_StopTextInput();
            return;
        }
        const Rect place = view_.toWindow(near.intersected({0, 0, panel_.w, panel_.h}));
        const Size points = windowSize(window_.get());
        const SDL_Rect spot{place.x * points.w / view_.window().w, place.y * points.h / view_.window().h,
                            place.w * points.w / view_.window().w, place.h * points.h / view_.window().h};
        SDL_SetTextInputRect(&spot);
        SDL_StartTextInput();
    }

    std::string takeComposed() override { return input_.takeComposed(); }

private:
    using Steady = std::chrono::steady_clock;

    void showAgain(Rect area) {
        if (area.empty()) return;
        // Whoever refreshes without ever waiting must not fill the memory.
        constexpr std::size_t kMostAreas = 32;
        const bool full = dirty_.size() >= kMostAreas;
        const auto meets = [&area, full](Rect other) { return full || !other.intersected(area).empty(); };
        const auto known = std::find_if(dirty_.begin(), dirty_.end(), meets);
        if (known != dirty_.end()) {
            *known = known->united(area);
        } else {
            dirty_.push_back(area);
        }
    }

    // While the connection is there. True when the window shows something that it has not shown before.
    bool show() {
        shownAt_ = Steady::now();
        if (uncovered_) {
            // Uncovering and resizing tell many times what one painting answers.
            SDL_PumpEvents();
            SDL_FlushEvent(SDL_WINDOWEVENT);
        }
        SDL_Surface* surface = SDL_GetWindowSurface(window_.get());
        if (surface == nullptr) return false;
        if (Size{surface->w, surface->h} != view_.window()) layOut({surface->w, surface->h});
        if (uncovered_) {
            fillBorder(*surface);
            dirty_.assign(1, Rect{0, 0, panel_.w, panel_.h});
        }
        if (dirty_.empty() && !unseenInk_) return false;
        changed_.clear();
        // What meets the wet ink is painted together with it: once, and as one rectangle, which costs the least.
        Rect wet = wet_.area();
        for (const Rect& area : dirty_) {
            if (!area.intersected(wet).empty()) {
                wet = wet.united(area);
            } else {
                changed_.push_back(sdlRect(paint(*surface, area, shown_)));
            }
        }
        if (!wet.empty()) changed_.push_back(sdlRect(paint(*surface, wet, &wet_.over(*shown_, wet))));
        dirty_.clear();
        unseenInk_ = false;
        if (uncovered_) changed_.assign(1, SDL_Rect{0, 0, surface->w, surface->h});
        uncovered_ =
            SDL_UpdateWindowSurfaceRects(window_.get(), changed_.data(), static_cast<int>(changed_.size())) != 0;
        return !uncovered_;
    }

    // After false both SDL's queue and the library's own are empty, so that only the connection brings something new.
    static bool take(SDL_Event& event) {
        const auto taken = [&event] {
            return SDL_PeepEvents(&event, 1, SDL_GETEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT) > 0;
        };
        if (taken()) return true;
        SDL_PumpEvents();
        return taken();
    }

    // On a screen whose points are several pixels the window came out that much larger than the panel.
    void shrinkToPixels(const SDL_Surface& surface, Size points, Size room) {
        if (surface.w <= points.w) return;
        const auto inPoints = [&](int pixels) { return std::max(1, pixels * points.w / surface.w); };
        const Size size = WindowView::fit({inPoints(panel_.w), inPoints(panel_.h)}, room);
        SDL_SetWindowSize(window_.get(), size.w, size.h);
        SDL_SetWindowPosition(window_.get(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED);
    }

    void layOut(Size window) {
        view_ = WindowView(panel_, window);
        scaler_ = AreaScaler(panel_, view_.picture().size());
        staging_.reset();
        uncovered_ = true;
    }

    void noteWindow(const SDL_WindowEvent& event) {
        if (event.event == SDL_WINDOWEVENT_EXPOSED || event.event == SDL_WINDOWEVENT_SIZE_CHANGED) uncovered_ = true;
    }

    void fillBorder(SDL_Surface& surface) const {
        const Rect picture = view_.picture();
        const int right = picture.x + picture.w;
        const int bottom = picture.y + picture.h;
        const std::array<SDL_Rect, 4> strips = {{{0, 0, surface.w, picture.y},
                                                 {0, bottom, surface.w, surface.h - bottom},
                                                 {0, picture.y, picture.x, picture.h},
                                                 {right, picture.y, surface.w - right, picture.h}}};
        SDL_FillRects(&surface, strips.data(), static_cast<int>(strips.size()),
                      SDL_MapRGB(surface.format, kBorderGrey, kBorderGrey, kBorderGrey));
    }

    // Returns the pixels of the window that it has painted.
    Rect paint(SDL_Surface& surface, Rect area, const Framebuffer* picture) {
        const Rect place = view_.toWindow(area);
        SDL_Rect target = sdlRect(place);
        if (picture == nullptr) {
            SDL_FillRect(&surface, &target, SDL_MapRGB(surface.format, 0xFF, 0xFF, 0xFF));
            return place;
        }
        if (takesRows(surface)) {
            scaleInto(surface, place, *picture);
            return place;
        }
        if (!staging_)
            staging_.reset(SDL_CreateRGBSurfaceWithFormat(0, surface.w, surface.h, 32, SDL_PIXELFORMAT_RGB888));
        if (!staging_) return {};
        scaleInto(*staging_, place, *picture);
        SDL_BlitSurface(staging_.get(), &target, &surface, &target);
        return place;
    }

    void scaleInto(SDL_Surface& surface, Rect place, const Framebuffer& shown) {
        const Rect picture = view_.picture();
        const int channels = shown.bytesPerPixel();
        const PixelRows rows{shown.at(0, 0), shown.stride(), channels};
        row_.resize(static_cast<std::size_t>(place.w) * 3);
        for (int y = place.y; y < place.bottom(); ++y) {
            const Point first{place.x - picture.x, y - picture.y};
            const bool scaled = picture.size() != panel_;
            if (scaled) scaler_.scaleRow(rows, first, place.w, row_.data());
            const std::uint8_t* from = scaled ? row_.data() : shown.at(first.x, first.y);
            auto* to = reinterpret_cast<std::uint32_t*>(static_cast<std::uint8_t*>(surface.pixels) +
                                                        std::ptrdiff_t{y} * surface.pitch) +
                       place.x;
            for (int x = 0; x < place.w; ++x, from += channels)
                to[x] = static_cast<std::uint32_t>(channels == 1 ? *from * 0x010101
                                                                 : from[0] << 16 | from[1] << 8 | from[2]);
        }
    }

    Video video_;
    Window window_;
    Size panel_;
    WindowView view_;
    AreaScaler scaler_;
    std::vector<std::uint8_t> row_;  ///< scaled, on its way into the window
    WindowInput input_;
    SurfacePtr staging_;  ///< for screens of another pixel format
    const Framebuffer* shown_ = nullptr;
    std::vector<Rect> dirty_;  ///< of the panel, not yet in the window
    std::vector<SDL_Rect> changed_;
    WetLine wet_;
    bool unseenInk_ = false;
    bool uncovered_ = true;
    Steady::time_point shownAt_{};
    Connection connection_;  ///< last: it lets go of the library before the window closes
};

void setHints() {
    // No console: a machine without a window system is better served by the browser.
    SDL_SetHint(SDL_HINT_VIDEODRIVER, "x11,wayland");
    // The loop ends the program in order on a signal.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    // A finger is a finger and a mouse a mouse; neither arrives a second time as the other.
    SDL_SetHint(SDL_HINT_TOUCH_MOUSE_EVENTS, "0");
    SDL_SetHint(SDL_HINT_MOUSE_TOUCH_EVENTS, "0");
    // An input method shows what is being composed in its own window.
    SDL_SetHint(SDL_HINT_IME_SHOW_UI, "1");
    SDL_SetHint(SDL_HINT_IME_SUPPORT_EXTENDED_TEXT, "1");
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
}

}  // namespace

std::unique_ptr<Display> openWindow(Size panel, const std::string& title, const std::filesystem::path& icon,
                                    std::string& error) {
    setHints();
    // By default the window's surface is a texture, which without a GPU is drawn in software, whole, for every
    // refresh: a hundred times the cost. Some window systems offer nothing else.
    for (const char* acceleration : {"0", "1"}) {
        SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, acceleration);
        auto window = std::make_unique<WindowDisplay>(panel);
        if (window->hasScreen() && window->open(title, icon)) return window;
        error = SDL_GetError();
        if (!window->hasScreen()) break;
    }
    return nullptr;
}

}  // namespace host
