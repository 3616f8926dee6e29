#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "colour/canvas.h"
#include "colour/text_editor.h"

namespace {

/// A theme may list more sizes; only these count.
constexpr std::size_t kMostSizes = 128;

std::vector<int> parseSizes(std::string_view list) {
    std::vector<int> sizes;
    while (!list.empty() && sizes.size() < kMostSizes) {
        const std::size_t comma = list.find(',');
        const std::string field(list.substr(0, comma));
        if (!field.empty()) sizes.push_back(static_cast<int>(std::strtol(field.c_str(), nullptr, 10)));
        list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
    }
    return sizes;
}

/// A third of the way up a list of sizes, at most the eighth.
std::size_t defaultIndex(std::size_t sizes) {
    constexpr std::size_t kLastIndex = 7;
    constexpr std::size_t kLongList = 20;
    return sizes < kLongList ? 7 * sizes / 20 : kLastIndex;
}

int defaultFontSize() {
    constexpr int kSizeWithoutList = 18;
    const std::vector<int> sizes = parseSizes(GetThemeString("font_sizes", "18,28,62"));
    if (sizes.empty()) return kSizeWithoutList;
    const int reader_size = GetThemeInt("reader.default.font", 0);
    if (reader_size != 0) {
        std::fprintf(stderr, "DEBUG: def font size (reader.default.font): %u\n", static_cast<unsigned>(reader_size));
        return reader_size;
    }
    const std::size_t index = defaultIndex(sizes.size());
    const int size = sizes[index];
    std::fprintf(stderr, "DEBUG: def font size[%u]: %u\n", static_cast<unsigned>(index), static_cast<unsigned>(size));
    return size;
}

}  // namespace

char TextEditor::font_name_[kFontNameSize];
int TextEditor::font_size_ = 0;

void TextEditor::SetActive(bool on) {
    if (!on && state_ >= CreatingInputRect) commit(Inactive);
    if (on) state_ = WaitInputRect;
    if (font_ == nullptr && state_ != Inactive) openDefaultFont();
}

void TextEditor::openDefaultFont() {
    std::snprintf(font_name_, kFontNameSize - 1, "%s", vistrel_get_default_font(0));
    font_size_ = defaultFontSize();
    font_ = OpenFont(font_name_, font_size_, 0);
}

void TextEditor::SetFontColor(int color) {
    font_color_ = color;
    if (font_ != nullptr) SetFont(font_, color);
}

void TextEditor::ChangeFont() const {
    char font[256];
    std::snprintf(font, sizeof font - 1, "%s,%u", font_name_, static_cast<unsigned>(font_size_));
    OpenFontSelector(GetLangText("@Font"), font, 1, staticFontHandler);
}

void TextEditor::staticFontHandler(char* font, char* font2, char* font3, char* font4) {
    instance_->fontHandler(font, font2, font3, font4);
}

void TextEditor::fontHandler(char* font, char* /*font2*/, char* /*font3*/, char* /*font4*/) {
    constexpr std::size_t kMostDigits = 9;

    const char* comma = std::strchr(font, ',');
    if (comma == nullptr) return;
    const std::string_view name(font, static_cast<std::size_t>(comma - font));
    // A choice that does not fit is refused whole; half a name would open some other font.
    if (name.size() >= kFontNameSize || std::strlen(comma + 1) > kMostDigits) return;

    std::memcpy(font_name_, name.data(), name.size());
    font_name_[name.size()] = '\0';
    font_size_ = static_cast<int>(std::strtol(comma + 1, nullptr, 10));
    if (font_ != nullptr) CloseFont(font_);
    font_ = OpenFont(font_name_, font_size_, 0);
    if (state_ != ResizeEnable) return;
    canvas_->Draw();
    drawResizeRect();
    drawText();
    canvas_->Update();
}
