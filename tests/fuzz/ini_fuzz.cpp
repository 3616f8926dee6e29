// Any bytes as an ini file: as the keys of a keyboard, a language's texts and a theme's values.
#include <glib.h>

#include "fuzz/fuzz.h"
#include "platform/host/files/languages.h"
#include "platform/host/files/theme.h"
#include "platform/host/keyboard/keyboard_layout.h"
#include "support/temporary_folder.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const TemporaryFolder folder;
    static const auto icon = folder.write("icons/a_b.svg", "<svg viewBox='0 0 1 1'><path d='M0 0h1v1z'/></svg>");
    const auto file = folder.write("en.ini", FuzzInput(bytes, size).rest);
    const host::KeyboardLayout layout = host::loadKeyboardLayout(folder.path(), "en");
    for (const host::KeyboardPage* page : {&layout.base, &layout.shifted})
        for (const auto& row : page->rows) {
            assert(!row.empty() && row.size() <= 12);
            for (const auto& key : row) assert(g_utf8_validate(key.c_str(), -1, nullptr) != 0);
        }

    assert(host::Languages(folder.path(), "en").translated("@OK").find('\n') == std::string::npos);

    std::filesystem::rename(file, folder / "theme.ini");
    const host::Device device{.width = 200, .height = 200, .dpi = 50};
    host::Theme theme(folder.path(), device);
    static_cast<void>(theme.number("toolbar.height", 0));
    const auto picture = theme.picture("a_b_inv");
    assert(picture == nullptr || (picture->width <= 4096 && picture->height <= 4096));
    return 0;
}
