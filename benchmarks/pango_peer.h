#pragma once

#include <benchmark/benchmark.h>
#include <pango/pangoft2.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/host/base/device.h"

/// The size of the application's default font.
constexpr int kFontSize = 28;

/// Pango with its own settings, rendering into a bitmap that stands ready.
class PangoPeer {
public:
    explicit PangoPeer(host::Size size)
        : fonts_(pango_ft2_font_map_new()),
          context_(pango_font_map_create_context(fonts_.get())),
          pixels_(static_cast<std::size_t>(size.w) * static_cast<std::size_t>(size.h)) {
        bitmap_.width = static_cast<unsigned>(size.w);
        bitmap_.rows = static_cast<unsigned>(size.h);
        bitmap_.pitch = size.w;
        bitmap_.buffer = pixels_.data();
        bitmap_.num_grays = 256;
        bitmap_.pixel_mode = FT_PIXEL_MODE_GRAY;
    }

    void draw(const std::string& text, const char* family, const host::Device& device, int width, int top) {
        const std::unique_ptr<PangoLayout, Unref> layout(pango_layout_new(context_.get()));
        PangoFontDescription* font = pango_font_description_new();
        pango_font_description_set_family(font, family);
        pango_font_description_set_absolute_size(font, kFontSize * device.dpi * device.scale / 160 * PANGO_SCALE);
        pango_layout_set_font_description(layout.get(), font);
        pango_font_description_free(font);
        pango_layout_set_width(layout.get(), width * PANGO_SCALE);
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
        pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
        pango_ft2_render_layout(&bitmap_, layout.get(), 0, top);
        benchmark::ClobberMemory();
    }

private:
    struct Unref {
        void operator()(void* object) const { g_object_unref(object); }
    };

    std::unique_ptr<PangoFontMap, Unref> fonts_;
    std::unique_ptr<PangoContext, Unref> context_;
    std::vector<std::uint8_t> pixels_;
    FT_Bitmap bitmap_{};
};
