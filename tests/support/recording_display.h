#pragma once

#include <vector>

#include "platform/host/panel/display.h"

/// Notes the areas that it is given.
class RecordingDisplay final : public host::Display {
public:
    void present(const host::Framebuffer& /*shown*/, host::Rect area) override { areas.push_back(area); }
    std::optional<host::Input> wait(std::optional<std::chrono::milliseconds> /*timeout*/) override {
        return std::nullopt;
    }
    void wake() override {}

    std::vector<host::Rect> areas;
};
