#pragma once

#include <vector>

#include "platform/host/panel/display.h"

/// Notes what it is given; its person does nothing by himself.
class RecordingDisplay final : public host::Display {
public:
    void present(const host::Framebuffer& /*shown*/, host::Rect area) override { areas.push_back(area); }
    std::optional<host::Input> wait(std::optional<std::chrono::milliseconds> /*timeout*/) override {
        return std::nullopt;
    }
    void wake() override {}
    void setTextInput(bool on, host::Rect near) override { textPlace = on ? std::optional(near) : std::nullopt; }

    void wetInk(const host::WetInk* ink) override { wet = ink == nullptr ? std::vector<host::Point>{} : ink->path; }

    std::vector<host::Rect> areas;
    std::vector<host::Point> wet;
    std::optional<host::Rect> textPlace;
};
