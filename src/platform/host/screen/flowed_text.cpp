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
    const std::size_t line = firstTouched(static_cast<std::size_t>(edited - utf8_.begin()));
    utf8_ = utf8;
    layOutFrom(line);
    // Directions reach over line ends: what is right for a part may be wrong for the whole.
    const auto leftToRight = [](const Section& section) { return section.block.leftToRight(); };
    if (line > 0 && !std::all_of(sections_.begin(), sections_.end(), leftToRight)) layOutFrom(0);
}

Rect FlowedText::cursor(std::size_t offset) const {
    const Section& section = sectionOf(offset);
    return section.block.cursor(offset - section.start);
}

std::size_t FlowedText::offsetAt(Point at) const {
    const auto below = std::find_if(std::next(sections_.begin()), sections_.end(), [at](const Section& section) {
        return section.block.top() > at.y * TextBlock::kUnits;
    });
    const Section& section = *std::prev(below);
    return section.start + section.block.offsetAt(at);
}

bool FlowedText::readsFromRight(std::size_t offset) const {
    const Section& section = sectionOf(offset);
    return section.block.readsFromRight(offset - section.start);
}

void FlowedText::draw(Screen& screen, Point topLeft, Rect clip, Rgb colour) const {
    for (const Section& section : sections_) {
        text_.draw(screen, topLeft, section.block, clip, colour);
    }
}

/// The last line whose first word, the spaces behind it and one more character stand before the edit. So it still does
/// not fit the line above: spaces need room or not depending on what follows them.
std::size_t FlowedText::firstTouched(std::size_t edit) const {
    const std::string before = utf8_.substr(0, edit);
    const std::size_t behindSpaces = before.find_last_not_of(' ');
    if (behindSpaces == 0 || behindSpaces == std::string::npos) return 0;
    const std::size_t space = before.find_last_of(" \n", behindSpaces - 1);
    if (space == std::string::npos) return 0;
    const auto behind = std::find_if(lines_.begin(), lines_.end(),
                                     [space](const TextBlock::Line& line) { return line.start >= space; });
    return behind == lines_.begin() ? 0 : static_cast<std::size_t>(behind - lines_.begin()) - 1;
}

void FlowedText::cutBefore(std::size_t line) {
    while (!sections_.empty() && sections_.back().line >= line) sections_.pop_back();
    if (!sections_.empty()) sections_.back().block.keepLines(static_cast<int>(line - sections_.back().line));
    lines_.resize(std::min(line, lines_.size()));
}

void FlowedText::layOutFrom(std::size_t line) {
    const std::size_t start = line == 0 ? 0 : lines_[line].start;
    const int top = line == 0 ? 0 : lines_[line].top;
    cutBefore(line);
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
