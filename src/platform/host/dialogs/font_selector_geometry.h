#pragma once

#include <vector>

#include "platform/host/base/device.h"

namespace host {

/// Where the parts of the font selector stand, in pixels. On a screen that is wider than high, sizes, sample and
/// buttons stand beside the list instead of below it.
struct FontSelectorGeometry {
    /// `sizes` is the number of size buttons; 0 leaves their place to the list.
    FontSelectorGeometry(const Device& device, int sizes);

    Rect panel;
    Rect title;
    Rect list;
    int rows = 1;  ///< of the list
    Rect previous;
    Rect page;
    Rect next;
    std::vector<Rect> sizeButtons;
    Rect sample;
    Rect cancel;
    Rect ok;

private:
    void placePanel(const Device& device, int widest);
    void placeHead(Rect row, int button, int text, int gap);
    void placeSizes(Rect area, int count, int columns, int gap);
    void placeEnd(Rect row, int gap);
};

}  // namespace host
