#include "platform/host/screen/flowed_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {

FlowedText::FlowedText(Text& text, font_s font, int width) : text_(text), font_(std::move(font)), width_(width) {
    layOutFrom(0);
}

void FlowedText::set(const std::string& utf8) {
    const auto [edited, now] = std::mismatch(utf8_.begin(), utf8_.end(), utf8.begin(), utf8.end());
    if (edited == utf8_.end() && now == utf8.end()) return;
    const int line = firstTouched(static_cast<std::size_t>(edited - utf8_.begin()));
    utf8_ = utf8;
    layOutFrom(line);
    // Directions reach over line ends: what is right for a part may be wrong for the whole.
    const auto leftToRight = [](const Section& section) { return section.block.leftToRight(); };
    if (line > 0 && !std::all_of(sections_.begin(), sections_.end(), leftToRight)) layOutFrom(0);
}

Rect FlowedText::cursor(std::size_t offset, bool fromRight) const {
    const Section& section = sectionOf(offset);
    return section.block.cursor(offset - section.start, fromRight);
}

/// Text in several sections reads from left to right, and a step leads into the next one.
std::size_t FlowedText::beside(std::size_t offset, bool fromRight, bool toRight) const {
    const bool back = offset > 0 && !toRight;
    const Section& section = sectionOf(back ? offset - 1 : offset);
    return section.start + section.block.beside(offset - section.start, fromRight, toRight);
}

std::size_t FlowedText::offsetAt(Point at) const {
    const auto below = std::find_if(std::next(sections_.begin()), sections_.end(), [at](const Section& section) {
        return section.block.top() > at.y * TextBlock::kUnits;
    });
    const Section& section = *std::prev(below);
    return section.start + section.block.offsetAt(at);
}

int FlowedText::lineOf(std::size_t offset) const {
    const auto behind = std::find_if(lines_.begin(), lines_.end(),
                                     [offset](const TextBlock::Line& line) { return line.start > offset; });
    return std::max(static_cast<int>(behind - lines_.begin()) - 1, 0);
}

void FlowedText::draw(Screen& screen, Point topLeft, LineSpan lines, Rect clip, Rgb colour) const {
    for (auto section = sections_.begin(); section != sections_.end(); ++section) {
        const auto next = std::next(section);
        const int end = next == sections_.end() ? lines.end : std::min(lines.end, next->line);
        text_.draw(screen, topLeft, section->block, clip, colour, {lines.first - section->line, end - section->line});
    }
}

/// The last line whose first word, the spaces behind it and one more character stand before the edit. So it still does
/// not fit the line above: spaces need room or not depending on what follows them.
int FlowedText::firstTouched(std::size_t edit) const {
    const std::string before = utf8_.substr(0, edit);
    const std::size_t behindSpaces = before.find_last_not_of(' ');
    if (behindSpaces == 0 || behindSpaces == std::string::npos) return 0;
    const std::size_t space = before.find_last_of(" \n", behindSpaces - 1);
    return space == 0 || space == std::string::npos ? 0 : lineOf(space - 1);
}

/// From that line on; the lines above it stay.
void FlowedText::layOutFrom(int line) {
    const auto kept = static_cast<std::size_t>(line);
    const std::size_t start = line == 0 ? 0 : lines_[kept].start;
    const int top = line == 0 ? 0 : lines_[kept].top;
    lines_.resize(kept);
    while (!sections_.empty() && sections_.back().line >= line) sections_.pop_back();
    sections_.push_back({start, line, text_.layOut(utf8_.substr(start), font_, width_)});
    sections_.back().block.moveTo(top);
    for (TextBlock::Line& each : sections_.back().block.lines()) {
        each.start += start;
        lines_.push_back(each);
    }
}

const FlowedText::Section& FlowedText::sectionOf(std::size_t offset) const {
    const auto behind = std::find_if(std::next(sections_.begin()), sections_.end(),
                                     [offset](const Section& section) { return section.start > offset; });
    return *std::prev(behind);
}

}  // namespace host
