#pragma once

#include <future>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/base/device.h"
#include "platform/host/screen/screen.h"
#include "platform/host/screen/text_block.h"

/// The border's font handle: a family (empty: the default one) and a size in device-independent units (160 to the
/// inch).
struct font_s {
    std::string family{};
    int size = 0;

    bool operator==(const font_s&) const = default;
};

namespace host {

enum class Wrap { Words, None };

/// How a text is laid out. Start is the side at which the text's script begins. With Wrap::None a line that
/// does not fit is cut with an ellipsis, and the text is centred vertically in its box; with Wrap::Words
/// lines break at words, then anywhere, and the text starts at the top.
struct TextStyle {
    Align align = Align::Start;
    Wrap wrap = Wrap::Words;
    Rgb colour = kBlack;
};

/// Fonts of the machine, text layout and drawing. Owned by the Toolkit; the font machinery starts with the
/// first text that is measured or drawn, and anew when fonts have come or gone.
class Text {
public:
    explicit Text(const Device& device);
    ~Text();
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    /// Starts the font machinery beside the caller, who has something to wait for; the first text then waits for it.
    void warmUp();

    /// Null when the size is not positive. An unknown or null family gives the default one; "Sans", "Serif" and
    /// "Monospace" give the default ones of their kind.
    [[nodiscard]] std::unique_ptr<font_s> open(const char* family, int size);

    /// Family of the default font number `index`: 0 sans, 1 serif, 2 monospaced; any other is 0. Lives as long as
    /// this object.
    [[nodiscard]] const char* defaultFamily(int index) const;

    /// Draws UTF-8 text inside `box` and never outside it; accents that stand out of its first line push it down.
    /// Broken UTF-8 shows as replacement characters. A glyph is at most 1,000 pixels high, whatever the font's size.
    void draw(Screen& screen, Rect box, std::string_view utf8, const font_s& font, const TextStyle& style);

    /// Lays a text out as `draw` with Wrap::Words does in a box of that width.
    [[nodiscard]] TextBlock layOut(std::string_view utf8, const font_s& font, int width);

    /// Lays a text out on one line in the largest size, up to the font's own, in which it fits; at the smallest size it
    /// may not. The font takes that size.
    [[nodiscard]] TextBlock fitLine(std::string_view utf8, font_s& font, Size room, int smallest);

    /// Pixels that the text takes in a box of that width (0: as wide as it likes, lines broken only at line ends).
    [[nodiscard]] Size measure(std::string_view utf8, const font_s& font, int width);

    /// Families of the machine's fonts: first those that can write the language (a code such as "de"), then the others;
    /// both sorted without regard to case. No names that contain a comma.
    [[nodiscard]] std::vector<std::string> families(const std::string& language);

    /// A few characters that show a family which has no letters for its own name; empty for any other.
    [[nodiscard]] std::string sample(const std::string& family);

private:
    struct Engine;
    Engine& engine() const;

    const Device& device_;
    mutable std::future<std::unique_ptr<Engine>> warming_;
    mutable std::unique_ptr<Engine> engine_;
    mutable std::set<std::string> named_;  ///< default families whose names have been given away
};

}  // namespace host
