#include "platform/host/dialogs/font_list.h"

#include <algorithm>
#include <utility>

#include "platform/host/touch/pointer_event.h"

namespace host {

namespace {

constexpr int kNameSize = 28;      // device-independent units, where the name has room
constexpr int kSampleSize = 24;    // so that most scripts' letters have room at once, and their fonts open once
constexpr int kSmallestName = 14;  // device-independent units; what does not fit then is cut
constexpr int kRowMargin = 24;     // design units, at both ends of a row
constexpr int kCorner = 14;        // design units

}  // namespace

FontList::FontList(const Desk& desk, Rect box, int rows, std::string chosen)
    : desk_(desk),
      families_(desk.text.families(desk.languages.code())),
      box_(box),
      rows_(rows),
      chosen_(std::move(chosen)) {
    const auto place = std::find(families_.begin(), families_.end(), chosen_);
    if (place != families_.end()) page_ = static_cast<int>(place - families_.begin()) / rows_;
}

std::string FontList::pageText() const { return std::to_string(page_ + 1) + " / " + std::to_string(pageCount()); }

void FontList::turn(int pages) { page_ = (page_ + pages + pageCount()) % pageCount(); }

void FontList::paint() {
    for (int row = 0; row < rows_; ++row) paintRow(row);
}

bool FontList::pointer(int type, Point at) {
    if (type == kPointerDown) {
        press(rowAt(at));
        return false;
    }
    if (!pressed_ || (type != kPointerUp && rowAt(at) == pressed_)) return false;
    const int row = *pressed_;
    const bool acts = rowAt(at) == pressed_ && *family(row) != chosen_;
    press(std::nullopt);
    if (acts) choose(row);
    return acts;
}

int FontList::pageCount() const {
    const int families = static_cast<int>(families_.size());
    return std::max((families + rows_ - 1) / rows_, 1);
}

Rect FontList::rowBox(int row) const {
    const int top = box_.h * row / rows_;
    return {box_.x, box_.y + top, box_.w, box_.h * (row + 1) / rows_ - top};
}

const std::string* FontList::family(int row) const {
    const int index = page_ * rows_ + row;
    return index < static_cast<int>(families_.size()) ? &families_[static_cast<std::size_t>(index)] : nullptr;
}

std::optional<int> FontList::rowAt(Point at) const {
    for (int row = 0; row < rows_; ++row) {
        if (family(row) != nullptr && rowBox(row).contains(at)) return row;
    }
    return std::nullopt;
}

void FontList::paintRow(int row) {
    const Rect box = rowBox(row);
    const std::string* name = family(row);
    if (name == nullptr) return;
    const bool pressed = pressed_ == row;
    const int line = desk_.device.frameThickness(kThinLine);
    const int radius = desk_.device.designToPixel(kCorner);
    if (pressed) desk_.screen.fill(box, kBlack);
    if (*name == chosen_) {
        const int thick = desk_.device.frameThickness(kThickLine);
        desk_.screen.frame({.box = box, .thickness = thick, .radius = radius});
    } else if (row + 1 == rows_ || family(row + 1) == nullptr || *family(row + 1) != chosen_) {
        desk_.screen.fill({box.x, box.y + box.h - line, box.w, line}, kBlack);
    }
    const int margin = desk_.device.designToPixel(kRowMargin);
    paintName({box.x + margin, box.y + line, box.w - 2 * margin, box.h - 2 * line}, *name, pressed ? kWhite : kBlack);
}

/// The name in its own font. A font that cannot show it has the name in the default font, and some of its own
/// characters at the end of the row, where at least two of them have room.
void FontList::paintName(Rect inside, const std::string& family, Rgb colour) {
    const auto fitted = [this](const std::string& line, font_s font, Size room) {
        return desk_.text.fitLine(line, font, room, kSmallestName);
    };
    const std::string characters = desk_.text.sample(family);
    if (characters.empty()) {
        fitted(family, {family, kNameSize}, inside.size()).drawInside(desk_.screen, inside, Align::Start, colour);
        return;
    }
    const int margin = desk_.device.designToPixel(kRowMargin);
    const int room = inside.w - margin - 2 * inside.h;
    TextBlock name = fitted(family, {desk_.text.defaultFamily(0), kNameSize}, {room, inside.h});
    TextBlock sample = fitted(characters, {family, kSampleSize}, inside.size());
    const int nameWidth = std::min(name.size().w, room);
    const int sampleWidth = std::min(sample.size().w, inside.w - nameWidth - margin);
    const int end = inside.x + inside.w;
    name.drawInside(desk_.screen, {inside.x, inside.y, nameWidth, inside.h}, Align::Start, colour);
    sample.drawInside(desk_.screen, {end - sampleWidth, inside.y, sampleWidth, inside.h}, Align::Start, colour);
}

void FontList::showRow(int row, Waveform waveform) {
    desk_.screen.fill(rowBox(row), kWhite);
    paintRow(row);
    desk_.panel.update(rowBox(row), waveform);
}

void FontList::press(std::optional<int> row) {
    for (const std::optional<int> changed : {std::exchange(pressed_, row), row}) {
        if (changed) showRow(*changed, Waveform::Fast);
    }
}

void FontList::choose(int row) {
    const std::string before = std::exchange(chosen_, *family(row));
    for (int changed = 0; changed < rows_; ++changed) {
        // The line above the chosen one gives way to its frame.
        const auto concerns = [&](const std::string* name) { return name && (*name == before || *name == chosen_); };
        if (concerns(family(changed)) || (changed + 1 < rows_ && concerns(family(changed + 1)))) {
            showRow(changed, Waveform::Regular);
        }
    }
}

}  // namespace host
