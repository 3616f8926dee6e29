#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/bitmap.h"

namespace lumora::utilities {

/// A shared handle on a bitmap record. Copies share the pixels; the last one releases them.
class SmartBitmap {
public:
    /// Holds no bitmap.
    SmartBitmap() = default;

    /// Shares this record.
    explicit SmartBitmap(std::shared_ptr<bitmap_s> record) : bitmap_(std::move(record)) {}

    /// The theme's picture of that name; the built-in default picture for "broken_image" where the theme
    /// has none; empty for an empty or unknown name. `cached` asks to keep a private copy (unused: theme
    /// pictures are always shared).
    SmartBitmap(const std::string& name, bool cached);

    /// Becomes the theme's picture of that name, or `fallback` where the theme has none.
    void LoadFromTheme(const std::string& name, const SmartBitmap& fallback);

    /// Becomes a copy of a region of the screen buffer (see BitmapFromScreen); empty on failure.
    void FromScreen(int x, int y, int w, int h);

    [[nodiscard]] bool isEmpty() const { return bitmap_ == nullptr; }
    /// Pixels; 0 when empty.
    [[nodiscard]] int width() const { return bitmap_ ? bitmap_->width : 0; }
    [[nodiscard]] int height() const { return bitmap_ ? bitmap_->height : 0; }

    /// The record, owned by this handle and its copies; null when empty. Others may show it too, so it is not written.
    [[nodiscard]] bitmap_s* GetBitmap() const { return bitmap_.get(); }

private:
    std::shared_ptr<bitmap_s> bitmap_;
};

}  // namespace lumora::utilities

using lumora::utilities::SmartBitmap;
