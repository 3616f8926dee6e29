#pragma once

#include <vector>

#include "platform/host/panel/display.h"

namespace host {

/// Notes the areas that it is given.
class FakeDisplay final : public Display {
public:
    void present(const Framebuffer& /*shown*/, Rect area) override { areas.push_back(area); }
    std::optional<Input> wait(std::optional<std::chrono::milliseconds> /*timeout*/) override { return std::nullopt; }
    void wake() override {}

    std::vector<Rect> areas;
};

/// Makes every pixel of `area` of that colour; on grey its blue part counts.
inline void paint(Framebuffer& picture, Rect area, Rgb colour) {
    for (int y = area.y; y < area.bottom(); ++y) {
        for (int x = area.x; x < area.right(); ++x) {
            std::uint8_t* pixel = picture.at(x, y);
            for (int c = picture.bytesPerPixel() - 1; c >= 0; --c)
                pixel[c] = static_cast<std::uint8_t>(colour >> 8 * (picture.bytesPerPixel() - 1 - c));
        }
    }
}

}  // namespace host
