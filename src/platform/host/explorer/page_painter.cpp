#include "platform/host/explorer/page_painter.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <string_view>

#include "platform/host/files/picture_file.h"

namespace host {

namespace {

constexpr const char* kProgramName = "Colour";

// Device-independent units, 160 to the inch.
constexpr int kNameSize = 32;
constexpr int kNoticeSize = 20;
constexpr int kSmallestNotice = 8;
constexpr int kCaptionSize = 18;
constexpr int kPageNumberSize = 26;

// Design units, 300 to the inch. Above a page stands a toolbar, so pages are a little wider than the panel's shape.
constexpr int kToolbarHeight = 108;

constexpr Rgb kFrameGrey = 0x808080;

Rect centredIn(const Rect& room, Size size) {
    return {room.x + (room.w - size.w) / 2, room.y + (room.h - size.h) / 2, size.w, size.h};
}

/// The name that a new picture gets: "picture_", a number, ".bmp".
bool isGivenName(std::string_view name) {
    constexpr std::string_view kStart = "picture_";
    if (!name.starts_with(kStart) || name.size() == kStart.size()) return false;
    name.remove_prefix(kStart.size());
    return std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string localTime(std::filesystem::file_time_type changed) {
    const auto time = std::chrono::file_clock::to_sys(changed);
    const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
    std::tm parts{};
    if (::localtime_r(&seconds, &parts) == nullptr) return {};
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &parts)};
}

}  // namespace

PagePainter::PagePainter(const Desk& desk, const PageLayout& layout) : desk_(desk), layout_(layout) {}

void PagePainter::title(const std::string& notice, bool withButton) {
    const Rect bar = layout_.titleBar();
    const int margin = layout_.tile(0).x;
    desk_.screen.fill(bar, kWhite);
    desk_.screen.fill(
        {0, bar.h - desk_.device.frameThickness(kThinLine), bar.w, desk_.device.frameThickness(kThinLine)}, kBlack);
    const font_s nameFont{.size = kNameSize};
    const int nameWidth = std::min(desk_.text.measure(kProgramName, nameFont, 0).w + 1, bar.w / 2);
    desk_.text.draw(desk_.screen, {margin, 0, nameWidth, bar.h}, kProgramName, nameFont, {.wrap = Wrap::None});
    if (notice.empty()) return;
    const int left = margin + nameWidth + margin;
    const int right = (withButton ? layout_.noticeButton() : layout_.exitButton()).x;
    const Rect room{left, 0, right - margin - left, bar.h - margin / 4};
    if (room.empty()) return;
    font_s noticeFont{.size = kNoticeSize};
    int height = desk_.text.measure(notice, noticeFont, room.w).h;
    for (; height > room.h && noticeFont.size > kSmallestNotice; --noticeFont.size)
        height = desk_.text.measure(notice, {.size = noticeFont.size - 1}, room.w).h;
    const Rect box = centredIn(room, {room.w, std::min(height, room.h)});
    desk_.text.draw(desk_.screen, box, notice, noticeFont, {.align = Align::Centre});
}

void PagePainter::newPicture(const Rect& tile) {
    const Rect sheet = emptySheet(layout_.picture(tile));
    framed(sheet);
    if (const auto icon = desk_.theme.picture("explorer_new")) centred(sheet, *icon);
    caption(tile, desk_.languages.text("@NewPicture"));
}

void PagePainter::picture(const Rect& tile, const bitmap_s* thumbnail, const std::string& captionText) {
    const Rect room = layout_.picture(tile);
    if (thumbnail != nullptr) {
        framed(centredIn(room, {thumbnail->width, thumbnail->height}));
        centred(room, *thumbnail);
    } else {
        const Rect sheet = emptySheet(room);
        framed(sheet);
        if (const auto icon = desk_.theme.picture("broken_image")) centred(sheet, *icon);
    }
    caption(tile, captionText);
}

void PagePainter::pageNumber(int page, int pages) {
    const int left = static_cast<int>(layout_.previousButton().right());
    const Rect room{left, layout_.previousButton().y, layout_.nextButton().x - left, layout_.previousButton().h};
    const std::string text = std::to_string(page + 1) + " / " + std::to_string(pages);
    desk_.text.draw(desk_.screen, room, text, {.size = kPageNumberSize}, {.align = Align::Centre, .wrap = Wrap::None});
}

void PagePainter::press(const Rect& tile, bool pressed) {
    const int margin = layout_.pressMargin();
    const std::array<Rect, 4> edges{
        Rect{tile.x, tile.y, tile.w, margin}, Rect{tile.x, static_cast<int>(tile.bottom()) - margin, tile.w, margin},
        Rect{tile.x, tile.y, margin, tile.h}, Rect{static_cast<int>(tile.right()) - margin, tile.y, margin, tile.h}};
    for (const Rect& edge : edges) desk_.screen.fill(edge, kWhite);
    if (pressed) desk_.screen.frame({.box = tile, .thickness = std::max(margin / 2, 1), .radius = margin});
    for (const Rect& edge : edges) desk_.panel.update(edge, Waveform::Fast);
}

void PagePainter::framed(const Rect& sheet) {
    const int line = std::max(desk_.device.frameThickness(kThinLine) / 2, 1);
    desk_.screen.fill(sheet.inset(-line), kFrameGrey);
    desk_.screen.fill(sheet, kWhite);
}

void PagePainter::centred(const Rect& room, const bitmap_s& picture) {
    // A sheet too small for its icon is plainer without it.
    if (picture.width > room.w || picture.height > room.h) return;
    const Rect place = centredIn(room, {picture.width, picture.height});
    desk_.screen.draw({place.x, place.y}, picture);
}

void PagePainter::caption(const Rect& tile, const std::string& text) {
    desk_.text.draw(desk_.screen, layout_.caption(tile), text, {.size = kCaptionSize},
                    {.align = Align::Centre, .wrap = Wrap::None});
}

Rect PagePainter::emptySheet(const Rect& room) const {
    const Device& device = desk_.device;
    const int pageHeight = std::max(device.height - device.designToPixel(kToolbarHeight), 1);
    const double factor = std::min(1.0 * room.w / device.width, 1.0 * room.h / pageHeight);
    return centredIn(room, {static_cast<int>(device.width * factor), static_cast<int>(pageHeight * factor)});
}

std::string captionOf(const PictureEntry& picture) {
    const std::string name = picture.file.stem().string();
    return isGivenName(name) ? localTime(picture.changed) : printable(name);
}

}  // namespace host
