#include "platform/host/explorer/explorer.h"

#include <algorithm>
#include <span>
#include <utility>

#include "platform/host/touch/pointer_event.h"

namespace host {

namespace {

constexpr int kRepaint = 23;
constexpr int kRepaintAfterSleep = 43;

constexpr int kButtonLabelSize = 26;  // units of 1/160 inch

ButtonFace face(const Desk& desk, const char* key, const char* icon) {
    return {.label = desk.languages.text(key), .icon = icon, .font = {.size = kButtonLabelSize}};
}

}  // namespace

Explorer::Explorer(const Desk& desk, const Storage& storage, Keeper& keeper, ExplorerActions actions)
    : desk_(desk),
      storage_(storage),
      keeper_(keeper),
      actions_(std::move(actions)),
      layout_(desk.device),
      painter_(desk, layout_),
      exit_(layout_.exitButton(), face(desk, "@Exit", "explorer_exit")),
      previous_(layout_.previousButton(), face(desk, "@PreviousPage", "explorer_previous")),
      next_(layout_.nextButton(), face(desk, "@NextPage", "explorer_next")),
      noticeButton_(layout_.noticeButton(), face(desk, "@Undo", "")) {
    if (!storage.problem().empty()) tell({desk.languages.text("@NoStorage")});
}

void Explorer::show() {
    readFolder();
    if (Notice notice = keeper_.takeNotice(); !notice.text.empty()) tell(std::move(notice));
    paint();
    desk_.panel.update(desk_.device.bounds(), Waveform::Full);
}

int Explorer::handle(int type, int par1, int par2) {
    switch (type) {
        case kRepaint:
        case kRepaintAfterSleep:
            show();
            return 1;
        case kPointerDown:
        case kPointerMove:
        case kPointerReport:
        case kPointerUp:
            pointer(type, {par1, par2});
            return 1;
        default:
            return 0;
    }
}

std::vector<Tile> Explorer::tiles() const {
    std::vector<Tile> all = grid_;
    if (!notice_.button.empty()) all.push_back({Tile::Kind::Notice, noticeButton_.box()});
    all.push_back({Tile::Kind::Exit, exit_.box()});
    if (hasPrevious()) all.push_back({Tile::Kind::PreviousPage, previous_.box()});
    if (hasNext()) all.push_back({Tile::Kind::NextPage, next_.box()});
    return all;
}

int Explorer::pages() const { return layout_.pages(1 + static_cast<int>(pictures_.size())); }

void Explorer::readFolder() {
    pictures_ = storage_.pictures();
    page_ = std::min(page_, pages() - 1);
    fillPage();
}

void Explorer::fillPage() {
    grid_.clear();
    pressed_.reset();
    // "New picture" takes the first place of the first page, so every later place lies one behind its picture.
    const auto begin = static_cast<std::size_t>(std::max(page_ * layout_.tilesOnPage() - 1, 0));
    const auto end = static_cast<std::size_t>((page_ + 1) * layout_.tilesOnPage() - 1);
    const std::span all(pictures_);
    const std::span shown = all.subspan(begin, std::min(end, all.size()) - begin);
    thumbnails_.load(shown, layout_.picture(layout_.tile(0)).size());
    if (page_ == 0) grid_.push_back({Tile::Kind::NewPicture, layout_.tile(0)});
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const Rect area = layout_.tile(static_cast<int>(grid_.size()));
        grid_.push_back({Tile::Kind::Picture, area, shown[i].devicePath});
    }
}

void Explorer::paint() {
    desk_.screen.clear();
    painter_.title(notice_.text, !notice_.button.empty());
    if (!notice_.button.empty()) noticeButton_.paint(desk_);
    exit_.paint(desk_);
    std::size_t picture = 0;
    for (const Tile& tile : grid_) {
        if (tile.kind == Tile::Kind::NewPicture) {
            painter_.newPicture(tile.area);
            continue;
        }
        painter_.picture(tile.area, thumbnails_.at(picture), captionOf(thumbnails_.entry(picture)));
        ++picture;
    }
    if (pages() == 1) return;
    if (hasPrevious()) previous_.paint(desk_);
    if (hasNext()) next_.paint(desk_);
    painter_.pageNumber(page_, pages());
}

void Explorer::pointer(int type, Point at) {
    if (!pressButtons(type, at)) pressTile(type, at);
}

bool Explorer::pressButtons(int type, Point at) {
    if (exit_.pointer(desk_, type, at)) {
        actions_.leave();
        return true;
    }
    if (!notice_.button.empty() && noticeButton_.pointer(desk_, type, at)) {
        answer();
        return true;
    }
    if (hasPrevious() && previous_.pointer(desk_, type, at)) {
        turnTo(page_ - 1);
        return true;
    }
    if (hasNext() && next_.pointer(desk_, type, at)) {
        turnTo(page_ + 1);
        return true;
    }
    return false;
}

void Explorer::pressTile(int type, Point at) {
    const auto under =
        std::find_if(grid_.begin(), grid_.end(), [at](const Tile& tile) { return tile.area.contains(at); });
    if (type == kPointerDown) {
        if (pressed_) painter_.press(grid_[*pressed_].area, false);
        pressed_.reset();
        if (under == grid_.end()) return;
        pressed_ = static_cast<std::size_t>(under - grid_.begin());
        painter_.press(under->area, true);
        return;
    }
    if (!pressed_) return;
    const bool inside = grid_[*pressed_].area.contains(at);
    if (inside && type != kPointerUp) return;
    const Tile tile = grid_[*std::exchange(pressed_, std::nullopt)];
    painter_.press(tile.area, false);
    if (inside) act(tile);
}

void Explorer::act(const Tile& tile) {
    if (tile.kind == Tile::Kind::Picture) return openPicture(tile.devicePath);
    newPicture();
}

/// The file is looked at once more: another program may have written or removed it since the page was painted.
void Explorer::openPicture(const std::string& devicePath) {
    std::string error;
    goOn(keeper_.prepare(devicePath, error), [this, devicePath] { actions_.open(devicePath); });
}

void Explorer::newPicture() {
    std::string error;
    goOn(keeper_.prepareNew(error), [this] { actions_.create(); });
}

void Explorer::goOn(std::optional<Notice> against, std::function<void()> go) {
    tell({});
    if (!against) {
        // The picture will be the newest one when the person comes back.
        page_ = 0;
        return go();
    }
    readFolder();
    tell(std::move(*against));
    heldUp_ = std::move(go);
    paint();
    desk_.panel.update(desk_.device.bounds(), Waveform::Regular);
}

void Explorer::tell(Notice notice) {
    notice_ = std::move(notice);
    noticeButton_.setFace(notice_.button);
}

void Explorer::answer() {
    const Notice answered = std::exchange(notice_, {});
    if (answered.act) {
        answered.act();
        return show();
    }
    page_ = 0;
    std::exchange(heldUp_, nullptr)();
}

void Explorer::turnTo(int page) {
    page_ = page;
    tell({});
    fillPage();
    paint();
    desk_.panel.update(desk_.device.bounds(), Waveform::Regular);
}

}  // namespace host
