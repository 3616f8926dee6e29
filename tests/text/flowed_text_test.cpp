#include "platform/host/screen/flowed_text.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace host {
namespace {

constexpr int kWidth = 260;

/// After every edit, lines, cursors, taps and pixels are those of the same text laid out as a whole.
void expectAsLaidOutAnew(Text& text, const FlowedText& edited, const font_s& font) {
    FlowedText whole(text, font, kWidth);
    whole.set(edited.utf8());
    const auto box = [](const FlowedText& flow, std::size_t line) { return flow.lines()[line].box; };
    ASSERT_EQ(edited.lines().size(), whole.lines().size());
    for (std::size_t line = 0; line < whole.lines().size(); ++line) {
        ASSERT_EQ(box(edited, line), box(whole, line)) << line;
        ASSERT_EQ(edited.lines()[line].start, whole.lines()[line].start) << line;
        for (const int x : {0, kWidth / 3, kWidth}) {
            const Point at{x, box(whole, line).y + 3};
            ASSERT_EQ(edited.offsetAt(at), whole.offsetAt(at));
        }
    }
    for (std::size_t offset = 0; offset <= whole.utf8().size(); offset += 7) {
        ASSERT_EQ(edited.cursor(offset, false), whole.cursor(offset, false)) << offset;
        ASSERT_EQ(edited.beside(offset, false, true), whole.beside(offset, false, true)) << offset;
        ASSERT_EQ(edited.beside(offset, false, false), whole.beside(offset, false, false)) << offset;
    }
    Screen ours({kWidth, 600}, PixelFormat::Grey8);
    Screen theirs({kWidth, 600}, PixelFormat::Grey8);
    edited.draw(ours, {0, -40}, {1, 9}, ours.pixels().bounds(), kBlack);
    whole.draw(theirs, {0, -40}, {1, 9}, theirs.pixels().bounds(), kBlack);
    ASSERT_EQ(ours.pixels(), theirs.pixels());
}

TEST(FlowedText, EveryEditGivesTheLinesOfTheWholeText) {
    const Device device{600, 800, 167, 1.0, false, 0};
    Text text(device);
    const font_s font{text.defaultFamily(0), 24};
    const std::vector<std::string> pieces{
        "a",   "wide ", " ",   "-",       "\n",     "é",    "unbrokenstretchofletters",
        "ffi", "(x) ",  "12 ", "e\u0301", "\u00A0", "שלום", "the lazy dog jumps over "};
    std::mt19937 random(7);
    const auto below = [&random](std::size_t count) { return static_cast<std::ptrdiff_t>(random() % count); };
    for (int round = 0; round < 20; ++round) {
        FlowedText flow(text, font, kWidth);
        std::vector<std::string> written;
        for (int edit = 0; edit < 60; ++edit) {
            // Mostly at the end, as people type.
            const auto place = below(3) == 0 ? below(written.size() + 1) : static_cast<std::ptrdiff_t>(written.size());
            if (place > 0 && below(4) == 0) {
                written.erase(written.begin() + place - 1);
            } else {
                written.insert(written.begin() + place, pieces[static_cast<std::size_t>(below(pieces.size()))]);
            }
            const std::string content = std::accumulate(written.begin(), written.end(), std::string());
            flow.set(content);
            ASSERT_NO_FATAL_FAILURE(expectAsLaidOutAnew(text, flow, font)) << "round " << round << ": " << content;
        }
    }
}

/// Where directions meet, a step never leads back, and the bar stands where the keys' next letter would.
TEST(FlowedText, StepsGoWhereTheArrowPoints) {
    const Device device{600, 800, 167, 1.0, false, 0};
    Text text(device);
    for (const char* mixed : {"abc كتاب def", "كتاب abc كتاب", "one two"}) {
        for (const bool fromRight : {false, true}) {
            FlowedText flow(text, {text.defaultFamily(0), 24}, 500);
            flow.set(mixed);
            const auto x = [&](std::size_t offset) { return flow.cursor(offset, fromRight).x; };
            for (const bool toRight : {false, true}) {
                std::size_t at = flow.offsetAt({toRight ? 0 : 500, 5});
                for (std::size_t next = flow.beside(at, fromRight, toRight); next != at;
                     at = std::exchange(next, flow.beside(next, fromRight, toRight))) {
                    EXPECT_TRUE(toRight ? x(next) >= x(at) : x(next) <= x(at)) << mixed << ' ' << at << ' ' << next;
                }
                const int end = toRight ? 499 : 1;
                EXPECT_EQ(x(at), x(flow.offsetAt({end, 5}))) << mixed << " to the end";
            }
        }
    }
}

}  // namespace
}  // namespace host
