#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/touch/desk.h"

namespace host {

/// The machine's fonts in pages of rows, each family's name shown in itself, with one family chosen. Those that can
/// write the person's language come first. Only the page shown opens its fonts.
class FontList {
public:
    /// Opens at the page of `chosen`, a family of the list.
    FontList(const Desk& desk, Rect box, int rows, std::string chosen);

    [[nodiscard]] const std::string& chosen() const { return chosen_; }
    /// For people: "3 / 12".
    [[nodiscard]] std::string pageText() const;

    /// Turns to the next page (1) or the one before (-1); behind the last comes the first.
    void turn(int pages);

    /// Paints the page onto white ground in the screen buffer; refreshes nothing.
    void paint();

    /// One pointer event; repaints and refreshes the rows whose look changes. True when another family is chosen.
    [[nodiscard]] bool pointer(int type, Point at);

private:
    [[nodiscard]] int pageCount() const;
    [[nodiscard]] Rect rowBox(int row) const;
    /// The family in a row of the page; null in an empty row.
    [[nodiscard]] const std::string* family(int row) const;
    [[nodiscard]] std::optional<int> rowAt(Point at) const;
    void paintRow(int row);
    void paintName(Rect inside, const std::string& family, Rgb colour);
    void showRow(int row, Waveform waveform);
    void press(std::optional<int> row);
    void choose(int row);

    Desk desk_;
    std::vector<std::string> families_;
    Rect box_;
    int rows_;
    std::string chosen_;
    int page_ = 0;
    std::optional<int> pressed_;
};

}  // namespace host
